#include "toolkit/bound/TreeShape.h"

#include <QHash>

#include <algorithm>

TreeShape::TreeShape(const QStringList &keys, const QStringList &parentKeys, const QString &rootValue)
    : m_parent(static_cast<size_t>(keys.size()), Top)
{
    ResolveParents(keys, parentKeys, rootValue);
    OpenCircles();
    LimitDepth();
    ListChildren();
}

int TreeShape::ChildCount(int row) const
{
    if (m_firstChild.empty())
        return 0;
    const auto slot = static_cast<size_t>(row + 1);
    return m_firstChild[slot + 1] - m_firstChild[slot];
}

int TreeShape::ChildAt(int row, int position) const
{
    return m_children[static_cast<size_t>(m_firstChild[static_cast<size_t>(row + 1)] + position)];
}

int TreeShape::RowAfter(int row) const
{
    if (ChildCount(row) > 0)
        return ChildAt(row, 0);
    for (; row != Top; row = ParentOf(row)) {
        const int position = PositionOf(row) + 1;
        if (position < ChildCount(ParentOf(row)))
            return ChildAt(ParentOf(row), position);
    }
    return Top;
}

int TreeShape::RowBefore(int row) const
{
    if (row == Top || PositionOf(row) == 0)
        return row == Top ? Top : ParentOf(row);
    row = ChildAt(ParentOf(row), PositionOf(row) - 1);
    while (ChildCount(row) > 0)
        row = ChildAt(row, ChildCount(row) - 1);
    return row;
}

void TreeShape::ResolveParents(const QStringList &keys, const QStringList &parentKeys, const QString &rootValue)
{
    QHash<QStringView, int> rowOfKey;
    rowOfKey.reserve(keys.size());
    for (int row = RowCount() - 1; row >= 0; --row) { // backwards, so that the first of equal keys wins
        if (!keys[row].isEmpty())
            rowOfKey.insert(keys[row], row);
    }
    for (int row = 0; row < RowCount(); ++row) {
        if (parentKeys[row] != rootValue)
            m_parent[static_cast<size_t>(row)] = rowOfKey.value(parentKeys[row], Top);
    }
}

void TreeShape::OpenCircles()
{
    // Walks up from each row once; meeting a row of the same walk again means a cycle.
    std::vector<int> walkOf(m_parent.size(), -1);
    for (int start = 0; start < RowCount(); ++start) {
        int row = start;
        while (row != Top && walkOf[static_cast<size_t>(row)] < 0) {
            walkOf[static_cast<size_t>(row)] = start;
            row = ParentOf(row);
        }
        if (row == Top || walkOf[static_cast<size_t>(row)] != start)
            continue;
        int first = row;
        for (int other = ParentOf(row); other != row; other = ParentOf(other))
            first = std::min(first, other);
        m_parent[static_cast<size_t>(first)] = Top;
    }
}

void TreeShape::LimitDepth()
{
    std::vector<int> depth(m_parent.size(), 0); // 0: not known yet; the top level has 1
    std::vector<int> path;
    for (int start = 0; start < RowCount(); ++start) {
        int row = start;
        for (; row != Top && depth[static_cast<size_t>(row)] == 0; row = ParentOf(row))
            path.push_back(row);
        int level = row == Top ? 0 : depth[static_cast<size_t>(row)];
        for (; !path.empty(); path.pop_back()) {
            const auto current = static_cast<size_t>(path.back());
            if (level == MaxDepth) {
                level = 0;
                m_parent[current] = Top;
            }
            depth[current] = ++level;
        }
    }
}

void TreeShape::ListChildren()
{
    m_firstChild.assign(m_parent.size() + 2, 0);
    for (const int parent : m_parent)
        ++m_firstChild[static_cast<size_t>(parent + 2)];
    for (size_t slot = 1; slot < m_firstChild.size(); ++slot)
        m_firstChild[slot] += m_firstChild[slot - 1];

    m_children.resize(m_parent.size());
    m_position.resize(m_parent.size());
    std::vector<int> placed(m_parent.size() + 1, 0);
    for (int row = 0; row < RowCount(); ++row) {
        const auto slot = static_cast<size_t>(ParentOf(row) + 1);
        const int position = placed[slot]++;
        m_position[static_cast<size_t>(row)] = position;
        m_children[static_cast<size_t>(m_firstChild[slot] + position)] = row;
    }
}
