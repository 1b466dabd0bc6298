#pragma once

#include "base/Colour.h"
#include "stores/Schema.h"

#include <QByteArray>
#include <QString>

/// The options that, besides its bytes, determine the page of a passage.
struct PageOptions
{
    int mode = PageMode::Vietnamese;
    int marginWidth = 0;
    QString fontName;
};

/// The page of a passage: the stored bytes with "Segoe UI" replaced by the font (ASCII case ignored), "150%" by "200%",
/// and the margin's blockquotes around them if the mode has margins. Bytes are UTF-8 and never decoded; invalid bytes
/// pass unchanged. Empty if nothing remains to show, because the content is empty, or consists of font names and the
/// font is empty; then show the fallback page.
QByteArray ComposePassage(const QByteArray &content, const PageOptions &options);

/// What stands for a passage or a group on paper: "lumivara://text/1101".
QString PassageAddress(int idVic);
/// The language that most of a passage's letters are read in, as "vi". Parallel texts count as their translation.
QString PassageLanguage(int mode);

/// The page of a group or of a passage without text: its name as a heading. UTF-8.
QByteArray ComposeFallbackPage(const QByteArray &text);

/// The heading's text, UTF-8: the row's own name from 1000 on, "no data" below, by the interface language.
QByteArray FallbackText(int idVic, int interfaceLang, const QString &nameVietnamese, const QString &nameEnglish);

/// The host's style sheet for every page of the reader: background colour and line height.
QString HostStyle(Colour background);

/// A text in a bare page with a charset. UTF-8 in and out.
QByteArray UTF8StrToHTML(const QByteArray &text);
