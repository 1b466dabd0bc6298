#pragma once

#include "base/Colour.h"
#include "stores/Schema.h"

#include <QByteArray>
#include <QString>

/// What the page of a stored passage depends on beside its bytes.
struct PageOptions
{
    int mode = PageMode::Vietnamese;
    int marginWidth = 0;
    QString fontName;
};

/// The page of a passage: the stored bytes with "Segoe UI" replaced by the font (ASCII case ignored), "150%" by "200%",
/// and the margin's blockquotes around them where the mode has margins. Bytes are UTF-8 and never decoded; bytes that
/// are no UTF-8 pass untouched. Empty where nothing remains to show: a content that is empty or consists of font names,
/// with an empty font; the fallback page is due then.
QByteArray ComposePassage(const QByteArray &content, const PageOptions &options);

/// The page of a group or of a passage without text: its name as a heading. UTF-8.
QByteArray ComposeFallbackPage(const QByteArray &text);

/// The heading's text, UTF-8: the row's own name from 1000 on, "no data" below, by the interface language.
QByteArray FallbackText(int idVic, int interfaceLang, const QString &nameVietnamese, const QString &nameEnglish);

/// The style sheet that the host gives every page of the reader: ground colour and line height.
QString HostStyle(Colour background);

/// A text in a bare page with a charset. UTF-8 in and out.
QByteArray UTF8StrToHTML(const QByteArray &text);
