#include "presentation/GlobalUnit.h"

#include "base/Contrast.h"

#include <QList>

QString AppPath;
int InterfaceLang = 0;
QString FontName;
QString LastWord;
int DictionaryKind = 0;
bool MultiDictionary = false;
int GlobalActiveStyle = 0;
QString GlobalActiveName;
int CollectionMode = 0;

std::function<Colour(int code)> SystemColour;

Colour PlainColour(Colour colour)
{
    constexpr Colour systemColourMark = 0xFF;
    constexpr Colour white = 0x00FFFFFF;
    if (colour >> 24 != systemColourMark)
        return colour;
    return SystemColour ? SystemColour(static_cast<int>(colour & 0xFF)) : white;
}

QString ColorToHtml(Colour colour)
{
    colour = PlainColour(colour);
    return QString::asprintf("#%.2X%.2X%.2X", colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF);
}

bool IsDarkColour(Colour colour)
{
    constexpr double leastContrast = 4.5;
    colour = PlainColour(colour);
    const quint32 redFirst = (colour & 0xFF) << 16 | (colour & 0xFF00) | (colour >> 16 & 0xFF);
    return ContrastRatio(redFirst, 0) < leastContrast;
}

QString LowerAscii(QString text)
{
    for (QChar &character : text) {
        if (character >= u'A' && character <= u'Z')
            character = QChar(character.unicode() + (u'a' - u'A'));
    }
    return text;
}

QString UpperByCharacter(const QString &text)
{
    QString upper;
    upper.reserve(text.size());
    const QList<uint> characters = text.toUcs4();
    for (const uint character : characters)
        upper.append(QChar::fromUcs4(QChar::toUpper(character)));
    return upper;
}
