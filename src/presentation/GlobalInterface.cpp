#include "presentation/GlobalInterface.h"

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

Colour LightenColor(Colour colour, quint8 n)
{
    return Shifted(colour, n + 1);
}

Colour DarkenColor(Colour colour, quint8 n)
{
    return Shifted(colour, -(n + 1));
}
