#include "toolkit/controls/StripLines.h"

#include <gtest/gtest.h>

TEST(StripLines, EachLineStaysInTheStrip)
{
    struct Case
    {
        double height;
        int size, thickness, row;
    };
    for (const auto &[height, size, thickness, row] : {Case{0, 100, 3, 0},
                                                       {0.5, 100, 3, 49},
                                                       {1, 100, 3, 97},
                                                       {0.995, 100, 3, 97},
                                                       {0.5, 2, 3, 0},
                                                       {0.5, 0, 3, 0},
                                                       {0.5, 200, 6, 97}})
        EXPECT_EQ(StripRow(height, size, thickness), row) << height << " of " << size;
}

TEST(StripLines, ARowBelongsToTheNearestLine)
{
    const QList<double> heights{0.1, 0.5, 0.53, 0.5}; // rows 9 to 11, 49 to 51, 52 to 54, 49 to 51
    struct Case
    {
        int row;
        qsizetype line;
    };
    for (const auto &[row, line] :
         {Case{0, -1}, {6, 0}, {5, -1}, {11, 0}, {14, 0}, {15, -1}, {49, 3}, {51, 3}, {52, 2}, {57, 2}, {58, -1}})
        EXPECT_EQ(StripLineAt(heights, 100, 3, row), line) << row;
    EXPECT_EQ(StripLineAt({}, 100, 3, 5), -1);
}
