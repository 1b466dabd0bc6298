#pragma once

#include <QString>

/// Plain text of an HTML string as Chromium renders it: the text of the body, laid out in lines, in a hidden closed
/// page. Waits for Chromium, processing events. Empty if there is no document, or if the program ends meanwhile.
QString HtmlToPlainText(const QString &html);
