#include "presentation/GlobalUnit.h"

#include <QList>

#include <cmath>

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

namespace {

double LinearShare(Colour part)
{
    const double share = (part & 0xFF) / 255.0;
    return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

} // namespace

QString ColorToHtml(Colour colour)
{
    colour = PlainColour(colour);
    return QString::asprintf("#%.2X%.2X%.2X", colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF);
}

bool IsDarkColour(Colour colour)
{
    constexpr double glare = 0.05; // what a dark screen gives off anyway
    constexpr double leastContrast = 4.5;
    colour = PlainColour(colour);
    const double luminance =
        0.2126 * LinearShare(colour) + 0.7152 * LinearShare(colour >> 8) + 0.0722 * LinearShare(colour >> 16);
    return (luminance + glare) / glare < leastContrast;
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
