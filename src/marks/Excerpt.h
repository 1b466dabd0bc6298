#pragma once

#include <QByteArray>
#include <QString>

/// The excerpt of a mark: a small page with the reader's selection, stored as the bytes of a file.

constexpr int DefaultTitleSize = 63; ///< UTF-16 units

/// The page of a selection (HTML); every line end, CR, LF or CR LF, becomes CR LF, and one more is added at the end.
QString ExcerptPage(const QString &selection);
/// The file contents of a page: UTF-8 with a byte order mark.
QByteArray ExcerptFileBytes(const QString &page);

constexpr qsizetype LongestShownExcerpt = 3 << 20; ///< bytes
/// False for an excerpt that Chromium would take many seconds to lay out.
bool IsShownWhole(const QByteArray &excerpt);
/// The page to show for an excerpt: the same bytes, or if it is too long a page that says so in the interface's
/// language.
QByteArray ShownExcerpt(const QByteArray &excerpt);

/// The title of a new mark: the excerpt's plain text, cut at DefaultTitleSize, never inside a surrogate pair. It begins
/// with the byte order mark as U+FEFF, which counts.
QString DefaultTitle(const QByteArray &excerpt);
