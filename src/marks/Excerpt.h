#pragma once

#include <QByteArray>
#include <QString>

/// The excerpt of a marked passage: a small page around the words that the reader selected, kept as the bytes of a
/// file.

constexpr int DefaultTitleSize = 63; ///< UTF-16 units

/// The page around a selection (HTML), with every line end, CR, LF or CR LF, as CR LF and one more at the close.
QString ExcerptPage(const QString &selection);
/// What the file of a page holds: UTF-8 behind its byte order mark.
QByteArray ExcerptFileBytes(const QString &page);

/// The title that a new mark begins with: the excerpt's plain text, cut at DefaultTitleSize, never through a pair. The
/// byte order mark stands first as U+FEFF and counts.
QString DefaultTitle(const QByteArray &excerpt);
