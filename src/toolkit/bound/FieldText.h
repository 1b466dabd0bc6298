#pragma once

#include <QString>

/// Texts of edit controls that are bound to a field of limited size, all in UTF-16 units.

/// The beginning of a text that fits in `room`, never with half a pair at its end.
QString FittingPart(const QString &text, qsizetype room);

/// How the lines of a field's text end. A control shows LF only; what it writes has the ends that the text came with,
/// CR LF where it came with none. A text of several kinds takes LF, so that it does not grow.
QString LineEndOf(const QString &text);
/// With LF for every CR LF, CR and LF.
QString WithLineFeeds(const QString &text);
/// A text with LF as the field keeps it.
QString WithLineEnds(const QString &text, const QString &lineEnd);
