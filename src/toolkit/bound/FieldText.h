#pragma once

#include <QString>

/// Texts of edit controls bound to a field of limited size, in UTF-16 units.

/// The beginning of a text that fits in `room` UTF-16 units; it never ends with half a surrogate pair.
QString FittingPart(const QString &text, qsizetype room);

/// The line end of a field's text. Controls show LF only; they write the text's own line ends, CR LF if it had none.
/// A text with several kinds gets LF, so that it does not grow.
QString LineEndOf(const QString &text);
/// The text with LF for every CR LF, CR and LF.
QString WithLineFeeds(const QString &text);
/// A text with LF, converted to the field's line end.
QString WithLineEnds(const QString &text, const QString &lineEnd);
