#include "presentation/GlobalUnit.h"

#include <gmock/gmock.h>

namespace {

TEST(ColorToHtml, HasRedLowestAndCapitals)
{
    EXPECT_EQ(ColorToHtml(0x0000FFFF), QStringLiteral("#FFFF00"));
    EXPECT_EQ(ColorToHtml(0x000A0B0C), QStringLiteral("#0C0B0A"));
    EXPECT_EQ(ColorToHtml(0), QStringLiteral("#000000"));
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
    EXPECT_EQ(ColorToHtml(0xFF000005), QStringLiteral("#332211"));
    EXPECT_EQ(code, 5);
    current = 0x00FFFFFF;
    EXPECT_EQ(ColorToHtml(0xFF000005), QStringLiteral("#FFFFFF"));
    SystemColour = before;
}

} // namespace
