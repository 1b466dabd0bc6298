#include "everywhere/ReadingPlaces.h"

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

TEST(ReadingOrder, IsThatOfTheTree)
{
    // The rows of the groups are 1500, 1002, and 1001 below that.
    const std::vector<TreeGroup> groups{{500, -1}, {2, -1}, {1, 2}};
    const std::vector<TreeText> texts{{1200, 500}, {1100, 500}, {3000, 2}, {1010, 2}, {9000, 1}, {8000, 1}};
    EXPECT_THAT(ReadingOrder(groups, texts), ElementsAre(5, 4, 3, 2, 1, 0));
    EXPECT_THAT(ReadingOrder({{1, -1}, {300, -1}}, {{1200, -1}, {2000, 300}, {2001, 1}}), ElementsAre(2, 0, 1));
}

TEST(ReadingOrder, LosesNoText)
{
    // A group that is nowhere, and a circle.
    const std::vector<TreeGroup> groups{{1, -1}, {2, 3}, {3, 2}};
    EXPECT_THAT(ReadingOrder(groups, {{30, 3}, {20, 2}, {40, 77}, {90, 1}}), ElementsAre(3, 1, 0, 2));
    EXPECT_THAT(ReadingOrder({{1, -1}, {1, -1}, {1, 1}}, {{5, 1}}), ElementsAre(0));
    EXPECT_THAT(ReadingOrder({}, {}), ElementsAre());
}

} // namespace
