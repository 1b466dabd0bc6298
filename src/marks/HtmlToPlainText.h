#pragma once

#include <QString>

/// Plain text of an HTML string as the browser engine reads it: the text of the body, laid out in lines, through a
/// hidden closed page. Waits for the engine, processing events. Empty when there is no document, or when the program
/// ends meanwhile.
QString HtmlToPlainText(const QString &html);
