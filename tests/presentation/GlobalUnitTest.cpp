#include "presentation/GlobalUnit.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

TEST(ColorToHtml, HasRedLowestAndCapitals)
{
    EXPECT_EQ(ColorToHtml(0x0000FFFF), u"#FFFF00"_s);
    EXPECT_EQ(ColorToHtml(0x000A0B0C), u"#0C0B0A"_s);
    EXPECT_EQ(ColorToHtml(0), u"#000000"_s);
}

TEST(ColorToHtml, AsksForASystemColourAtEachCall)
{
    const auto before = SystemColour;
    Colour current = 0x00112233;
    int code = -1;
    SystemColour = [&](int asked) {
        code = asked;
        return current;
    };
    EXPECT_EQ(ColorToHtml(0xFF000005), u"#332211"_s);
    EXPECT_EQ(code, 5);
    current = 0x00FFFFFF;
    EXPECT_EQ(ColorToHtml(0xFF000005), u"#FFFFFF"_s);
    SystemColour = before;
}

TEST(IsDarkColour, IsWhereBlackCannotBeReadWell)
{
    const auto before = SystemColour;
    SystemColour = [](int code) { return code == 5 ? Colour(0x00302010) : Colour(0x00FFFFFF); };
    // Black has 4.48 to 1 on the grey 0x747474 and 4.54 on the next; red and blue are of unlike lightness.
    const struct
    {
        Colour colour;
        bool isDark;
    } rows[] = {{0x00000000, true},  {0x00FFFFFF, false}, {0x00747474, true}, {0x00757575, false},
                {0x000000FF, false}, {0x00FF0000, true},  {0xFF000005, true}, {0xFF000008, false},
                {0x00800000, true},  {0x0000FFFF, false}, {0x00008000, true}};
    for (const auto &[colour, isDark] : rows)
        EXPECT_EQ(IsDarkColour(colour), isDark) << std::hex << colour;
    SystemColour = before;
}

} // namespace
