#pragma once

#include "lumivara-data/canon/Language.h"
#include "lumivara-data/files/HtmlCleaner.h"

/// Pages made from imported texts as the reader expects them: with the replaceable font "Segoe UI" and sizes of "150%",
/// with a charset, without external references. All bytes are UTF-8.
/// Pages beyond a limit throw PageFault.
namespace ImportedPage {

/// Signs in Markdown that may be marks, its line ends among them: each makes a few hundred bytes while it is read.
inline constexpr qsizetype MostMarks = 500'000;
/// Quotations and lists that one line of Markdown may begin inside of each other.
inline constexpr qsizetype DeepestMarks = 100;

/// Text with HTML's special characters escaped.
QByteArray Escaped(const QByteArray &text);
/// The size that gives.
qsizetype EscapedSize(QByteArrayView text);
/// A whole page around a body. A title is plain text.
QByteArray Frame(const QByteArray &title, Language language, const QByteArray &body);
/// A page, or a fragment of one, cleaned and adapted.
QByteArray FromHtml(const QByteArray &html, const QByteArray &title, Language language, CleaningCounts &counts);
/// Plain text: empty lines separate paragraphs, line ends within one stay.
QByteArray FromText(const QByteArray &text, const QByteArray &title, Language language);
/// CommonMark; HTML in it is cleaned like a page's.
QByteArray FromMarkdown(const QByteArray &markdown, const QByteArray &title, Language language, CleaningCounts &counts);

} // namespace ImportedPage
