
#include "base/Colour.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

TEST(Colours, OfHtmlHaveRedLowestAndAskForASystemColourAtEachCall)
{
    EXPECT_EQ(ColorToHtml(0x000A0B0C), u"#0C0B0A"_s);
    Colour current = 0x00112233;
    SystemColour = [&](int code) { return code == 5 ? current : 0; };
    EXPECT_EQ(ColorToHtml(0xFF000005), u"#332211"_s);
    current = 0x00FFFFFF;
    EXPECT_EQ(ColorToHtml(0xFF000005), u"#FFFFFF"_s);
    SystemColour = nullptr;
}

TEST(Colours, AreDarkWhereBlackCannotBeReadWell)
{
    SystemColour = [](int code) { return code == 5 ? Colour(0x00302010) : Colour(0x00FFFFFF); };
    // Black has 4.48 to 1 on the grey 0x747474 and 4.54 on the next; red and blue are of unlike lightness.
    for (const Colour dark : {0x00747474U, 0x00FF0000U, 0xFF000005U, 0x00008000U})
        EXPECT_TRUE(IsDarkColour(dark)) << std::hex << dark;
    for (const Colour light : {0x00757575U, 0x000000FFU, 0xFF000008U, 0x0000FFFFU})
        EXPECT_FALSE(IsDarkColour(light)) << std::hex << light;
    SystemColour = nullptr;
}
