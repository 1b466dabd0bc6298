#include "toolkit/bound/TreeShape.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

/// The tree as text: row numbers, children in brackets.
QString Drawn(const TreeShape &shape, int row = TreeShape::Top)
{
    QStringList children;
    for (int position = 0; position < shape.ChildCount(row); ++position) {
        const int child = shape.ChildAt(row, position);
        EXPECT_EQ(shape.ParentOf(child), row);
        EXPECT_EQ(shape.PositionOf(child), position);
        const QString below = Drawn(shape, child);
        children.append(QString::number(child) + (below.isEmpty() ? below : u'(' + below + u')'));
    }
    return children.join(u' ');
}

} // namespace

TEST(TreeShape, HoldsEveryRowOnce)
{
    const struct
    {
        const char *rule;
        QString keys, parents, drawn; ///< keys parted by blanks
    } rows[]{
        {"a parent may come later", u"c b a"_s, u"b a -1"_s, u"2(1(0))"_s},
        {"orphans stand at the top", u"a b"_s, u"-1 nobody"_s, u"0 1"_s},
        {"empty keys are nobody's parent", u" "_s, u" "_s, u"0 1"_s},
        {"of equal keys the first takes the children", u"a a b a c"_s, u"-1 -1 a -1 a"_s, u"0(2 4) 1 3"_s},
        {"its own parent", u"a b"_s, u"a a"_s, u"0(1)"_s},
        {"a circle opens at its first row", u"x a b c"_s, u"-1 b c a"_s, u"0 1(3(2))"_s},
        {"a tail of a circle hangs below it", u"t a b"_s, u"b b a"_s, u"1(2(0))"_s},
        {"the root's key is no row", u"-1 a"_s, u"-1 -1"_s, u"0 1"_s},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Drawn(TreeShape(row.keys.split(u' '), row.parents.split(u' '), u"-1"_s)), row.drawn) << row.rule;
}

TEST(TreeShape, BoundsTheDepthOfAChain)
{
    QStringList keys, parents{u"-1"_s};
    for (int row = 0; row < 20 * TreeShape::MaxDepth; ++row)
        keys.append(QString::number(row));
    parents += keys.sliced(0, keys.size() - 1);
    const TreeShape shape(keys, parents, u"-1"_s);
    int deepest = 0;
    for (int row = 0; row < keys.size(); ++row) {
        int depth = 0;
        for (int above = row; above != TreeShape::Top; above = shape.ParentOf(above))
            ++depth;
        deepest = std::max(deepest, depth);
    }
    EXPECT_EQ(deepest, TreeShape::MaxDepth);
}

TEST(TreeShape, IsWalkedAsItStandsOpen)
{
    // 0(2(5) 3) 1 4
    const TreeShape shape(u"a b c d e f"_s.split(u' '), u"-1 -1 a a -1 c"_s.split(u' '), u"-1"_s);
    const QList<int> rows{0, 2, 5, 3, 1, 4};
    QList<int> down, up;
    for (int row = shape.RowAfter(TreeShape::Top); row != TreeShape::Top; row = shape.RowAfter(row))
        down.append(row);
    for (int row = rows.last(); row != TreeShape::Top; row = shape.RowBefore(row))
        up.prepend(row);
    EXPECT_EQ(down, rows);
    EXPECT_EQ(up, rows);
    EXPECT_EQ(TreeShape().RowAfter(TreeShape::Top), TreeShape::Top);
}
