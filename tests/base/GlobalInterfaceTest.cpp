#include "presentation/GlobalInterface.h"
#include "base/Colour.h"

#include <gtest/gtest.h>

TEST(ColourSteps, MoveByOneMoreThanAskedFor)
{
    SystemColour = [](int code) { return code == 5 ? Colour(0x0080FE01) : Colour(0); };
    const std::tuple<Colour (*)(Colour, quint8), Colour, quint8, Colour> cases[]{
        {LightenColor, BaseColors[0], 10, 0xA82B0B}, {DarkenColor, BaseColors[0], 65, 0x5B0000},
        {LightenColor, 0x00FF7F, 255, 0xFFFFFF},     {DarkenColor, 0xFF8000, 255, 0x000000},
        {LightenColor, 0xFF000005, 0, 0x81FF02},     {DarkenColor, 0xFF000005, 1, 0x7EFC00}};
    for (const auto &[change, colour, n, expected] : cases)
        EXPECT_EQ(change(colour, n), expected) << std::hex << colour << " by " << int(n);
    SystemColour = nullptr;
}
