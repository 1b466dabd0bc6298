#include "presentation/FontRules.h"

#include <gmock/gmock.h>

TEST(FontRules, TakeTheFirstKindOfTheTableAndCutOffFractions)
{
    EXPECT_EQ(FontKind({"TdxBar", "TcxButton", "QFrame", "TPanel", "TcxGrid"}), "TPanel");
    // A kind whose Tag has no rule still decides: what comes later in the table does not act in its place.
    EXPECT_EQ(FontKind({"TcxComboBox", "TcxDBLabel"}), "TcxDBLabel");
    FontRule rule;
    rule.sizePercent = 90;
    EXPECT_EQ(rule.Size(11), 9);
    rule.sizePercent = 110;
    EXPECT_EQ(rule.Size(9), 9);
}
