#pragma once

#include "lumivara-data/canon/Language.h"
#include "lumivara-data/files/HtmlCleaner.h"

/// Pages made of texts from elsewhere, in the manner that the reader expects: the font "Segoe UI" and sizes of "150%"
/// to exchange, the charset named, nothing that leads out. All bytes are UTF-8.
namespace ImportedPage {

/// Text with what HTML reads as marks escaped.
QByteArray Escaped(const QByteArray &text);
/// A whole page around a body. A title is plain text.
QByteArray Frame(const QByteArray &title, Language language, const QByteArray &body);
/// A page, or a piece of one, cleaned and brought into this manner.
QByteArray FromHtml(const QByteArray &html, const QByteArray &title, Language language, CleaningCounts &counts);
/// Plain text: empty lines part paragraphs, line ends within one stay.
QByteArray FromText(const QByteArray &text, const QByteArray &title, Language language);
/// CommonMark; HTML in it is cleaned like a page's.
QByteArray FromMarkdown(const QByteArray &markdown, const QByteArray &title, Language language, CleaningCounts &counts);

} // namespace ImportedPage
