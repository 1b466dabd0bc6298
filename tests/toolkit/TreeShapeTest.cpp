#include "toolkit/TreeShape.h"

#include <gmock/gmock.h>

namespace {

/// The tree as text: row numbers, children in brackets.
QString Drawn(const TreeShape &shape, int row = TreeShape::Top)
{
    QStringList children;
    for (int position = 0; position < shape.ChildCount(row); ++position) {
        const int child = shape.ChildAt(row, position);
        EXPECT_EQ(shape.ParentOf(child), row);
        EXPECT_EQ(shape.PositionOf(child), position);
        const QString below =
            shape.ChildCount(child) > 0 ? QLatin1Char('(') + Drawn(shape, child) + QLatin1Char(')') : QString();
        children.append(QString::number(child) + below);
    }
    return children.join(QLatin1Char(' '));
}

struct Case
{
    const char *rule;
    QStringList keys;
    QStringList parents;
    QString drawn;
};

QStringList Words(const char *text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '));
}

class TreeShapeTable : public testing::TestWithParam<Case>
{};

} // namespace

TEST_P(TreeShapeTable, HoldsEveryRowOnce)
{
    const TreeShape shape(GetParam().keys, GetParam().parents, QStringLiteral("-1"));
    EXPECT_EQ(Drawn(shape).toStdString(), GetParam().drawn.toStdString());
}

INSTANTIATE_TEST_SUITE_P(
    Rules, TreeShapeTable,
    testing::Values(
        Case{"NoRows", {}, {}, {}},
        Case{"ChildrenKeepTheRowsOrder", Words("a b c d"), Words("-1 a -1 a"), QStringLiteral("0(1 3) 2")},
        Case{"AParentMayComeLater", Words("c b a"), Words("b a -1"), QStringLiteral("2(1(0))")},
        Case{"OrphansStandAtTheTop", Words("a b"), Words("-1 nobody"), QStringLiteral("0 1")},
        Case{"EmptyKeysAreNobodysParent", {QString(), QString()}, {QString(), QString()}, QStringLiteral("0 1")},
        Case{"OfEqualKeysTheFirstTakesTheChildren", Words("a a b"), Words("-1 -1 a"), QStringLiteral("0(2) 1")},
        Case{"ItsOwnParent", Words("a b"), Words("a a"), QStringLiteral("0(1)")},
        Case{"ACircleOpensAtItsFirstRow", Words("x a b c"), Words("-1 b c a"), QStringLiteral("0 1(3(2))")},
        Case{"ATailOfACircleHangsBelowIt", Words("t a b"), Words("b b a"), QStringLiteral("1(2(0))")},
        Case{"TheRootsKeyIsNoRow", Words("-1 a"), Words("-1 -1"), QStringLiteral("0 1")}),
    [](const auto &info) { return std::string(info.param.rule); });

TEST(TreeShape, BoundsTheDepthOfAChain)
{
    constexpr int count = 20 * TreeShape::MaxDepth;
    QStringList keys, parents;
    for (int row = 0; row < count; ++row) {
        keys.append(QString::number(row));
        parents.append(QString::number(row - 1));
    }
    const TreeShape shape(keys, parents, QStringLiteral("-1"));
    EXPECT_EQ(shape.ChildCount(TreeShape::Top), 20);
    int deepest = 0;
    for (int row = 0; row < count; ++row) {
        int depth = 0;
        for (int above = row; above != TreeShape::Top; above = shape.ParentOf(above))
            ++depth;
        deepest = std::max(deepest, depth);
    }
    EXPECT_EQ(deepest, TreeShape::MaxDepth);
}
