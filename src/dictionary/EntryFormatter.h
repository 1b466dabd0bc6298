#pragma once

#include <QByteArray>
#include <QString>

/// Bytes of an entry's line that are shown; the rest is ignored.
constexpr qsizetype LongestEntryLine = 4096;

/// The page of one dictionary entry.
///
/// An entry is text in lines; the first character of a line is its kind: "@" head, "*" class, "-" sense, "!" phrase,
/// "=" example, "#" section, anything else plain. Its UTF-8 bytes are copied unchanged, only ASCII marks are
/// interpreted, and HTML in an entry is live. Any bytes give a page; its lists may be unbalanced, which browsers
/// tolerate.
QByteArray FormatEntry(const QByteArray &entry, const QString &fontName);

/// The style of the entry's page. Its placeholders are never filled in: Chromium drops the declarations that have one.
QString EntryStyle();
