#include "base/Messages.h"

QString TextOr(const QString &otherwise, const Message &message, int language)
{
    constexpr int vietnamese = 0;
    constexpr int english = 1;
    if (language == vietnamese)
        return QString::fromUtf16(message.vietnamese);
    return language == english ? QString::fromUtf16(message.english) : otherwise;
}

QString TextOrNone(const Message &message, int language)
{
    return TextOr({}, message, language);
}

QString TextOrEnglish(const Message &message, int language)
{
    return TextOr(QString::fromUtf16(message.english), message, language);
}
