#include "base/Colour.h"

#include "base/Contrast.h"

#include <algorithm>

namespace {

constexpr int ChannelBits = 8;
constexpr int Channels = 3;
constexpr int Full = 0xFF;

Colour Shifted(Colour colour, int steps)
{
    colour = PlainColour(colour);
    Colour shifted = 0;
    for (int bit = 0; bit < Channels * ChannelBits; bit += ChannelBits) {
        const int channel = static_cast<int>(colour >> bit & Full);
        shifted |= static_cast<Colour>(std::clamp(channel + steps, 0, Full)) << bit;
    }
    return shifted;
}

} // namespace

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

Colour LightenColor(Colour colour, quint8 n)
{
    return Shifted(colour, n + 1);
}

Colour DarkenColor(Colour colour, quint8 n)
{
    return Shifted(colour, -(n + 1));
}
