#include "presentation/GlobalUnit.h"

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

QString ColorToHtml(Colour colour)
{
    constexpr Colour systemColourMark = 0xFF;
    constexpr Colour white = 0x00FFFFFF;
    if (colour >> 24 == systemColourMark)
        colour = SystemColour ? SystemColour(static_cast<int>(colour & 0xFF)) : white;
    return QString::asprintf("#%.2X%.2X%.2X", colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF);
}
