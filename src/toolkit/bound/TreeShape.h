#pragma once

#include <QStringList>

#include <vector>

/// The tree that rows form by their keys and parent keys. Rows are numbers from 0, siblings keep the rows' order, and
/// every row is in the tree exactly once, whatever the keys are:
/// - A row whose parent is missing is at the top level.
/// - Of rows with the same key the first gets the children.
/// - A cycle of parents is broken at its first row, which goes to the top level.
/// - Rows deeper than MaxDepth go to the top level, too.
class TreeShape
{
public:
    static constexpr int Top = -1;
    static constexpr int MaxDepth = 500; ///< views walk the levels by recursion

    TreeShape() = default;
    /// REQUIRES: both lists have one entry per row.
    TreeShape(const QStringList &keys, const QStringList &parentKeys, const QString &rootValue);

    int RowCount() const { return static_cast<int>(m_parent.size()); }
    /// The row's parent, Top for the top level.
    int ParentOf(int row) const { return m_parent[static_cast<size_t>(row)]; }
    /// Position among its siblings, from 0.
    int PositionOf(int row) const { return m_position[static_cast<size_t>(row)]; }
    /// Number of children of a row, or of the top level.
    int ChildCount(int row) const;
    /// The child at a position. REQUIRES: 0 <= position < ChildCount(row).
    int ChildAt(int row, int position) const;
    /// The next row and the one before, as a reader goes down the tree with everything open; Top where there is none.
    int RowAfter(int row) const;
    int RowBefore(int row) const;

private:
    void ResolveParents(const QStringList &keys, const QStringList &parentKeys, const QString &rootValue);
    void OpenCircles();
    void LimitDepth();
    void ListChildren();

    std::vector<int> m_parent;
    std::vector<int> m_position;
    std::vector<int> m_firstChild; ///< by row + 1, so that entry 0 is the top level; where its children begin
    std::vector<int> m_children;
};
