#pragma once

#include <QByteArray>
#include <QString>

/// Of a line of an entry at most so many bytes count.
constexpr qsizetype LongestEntryLine = 4096;

/// The page of one dictionary entry.
///
/// An entry is text in lines, each of a kind that its first character tells: "@" head, "*" class, "-" sense,
/// "!" phrase, "=" example, "#" section, anything else plain. Its bytes are UTF-8 and pass as they stand; only ASCII
/// marks are looked at, and HTML in an entry is live. Any bytes give a page, whose lists need not balance: the browser
/// makes the best of them.
QByteArray FormatEntry(const QByteArray &entry, const QString &fontName);

/// The style of the entry's page, handed to the browser as it stands: its placeholders are filled by nobody, and the
/// engine drops the declarations that hold one.
QString EntryStyle();
