#pragma once

#include "base/InterfaceLanguage.h"

#include <QString>

/// A text that code composes, in the two languages that have one. A unit keeps its own as constants at its top; texts
/// of windows belong to their `.ui` instead.
struct Message
{
    const char16_t *vietnamese;
    const char16_t *english;
};

/// The message in a language of the interface; `otherwise` where the language is neither of the two.
QString TextOr(const QString &otherwise, const Message &message, int language = InterfaceLang);
/// The message; null where the language is neither of the two. For what shows nothing rather than foreign words.
QString TextOrNone(const Message &message, int language = InterfaceLang);
/// The message; in English where the language is neither of the two. For what must be told in any case.
QString TextOrEnglish(const Message &message, int language = InterfaceLang);

/// The tools' language: English unless the program, which shows their report, asked for Vietnamese. Decided before
/// there are other threads. Inline, because what the tools share is linked without the core.
struct SpeechOfTools
{
    inline static bool isVietnamese = false;
};
/// A sentence of the tools.
inline QString Sentence(const Message &message)
{
    return QString::fromUtf16(SpeechOfTools::isVietnamese ? message.vietnamese : message.english);
}
