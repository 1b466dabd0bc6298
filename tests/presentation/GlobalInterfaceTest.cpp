#include "presentation/GlobalInterface.h"

#include <gtest/gtest.h>

namespace {

TEST(Colours, MoveByOneStepMoreThanAskedFor)
{
    SystemColour = [](int code) { return code == 5 ? Colour(0x0080FE01) : Colour(0); };
    const struct
    {
        Colour (*change)(Colour, quint8);
        Colour colour;
        int n;
        Colour expected;
    } cases[] = {
        {LightenColor, BaseColors[0], 10, 0xA82B0B}, {DarkenColor, BaseColors[0], 65, 0x5B0000},
        {DarkenColor, BaseColors[0], 90, 0x420000},  {LightenColor, 0x000000, 0, 0x010101},
        {LightenColor, 0x00FF7F, 255, 0xFFFFFF},     {DarkenColor, 0xFF8000, 255, 0x000000},
        {LightenColor, 0xFF000005, 0, 0x81FF02},     {DarkenColor, 0xFF000005, 1, 0x7EFC00},
    };
    for (const auto &item : cases)
        EXPECT_EQ(item.change(item.colour, static_cast<quint8>(item.n)), item.expected)
            << std::hex << item.colour << " by " << item.n;
    SystemColour = nullptr;
}

} // namespace
