#include "toolkit/bound/DBTreeListColumn.h"

#include "toolkit/bound/DBTreeList.h"

TDBTreeListColumn::TDBTreeListColumn(TDBTreeList &tree, const QString &fieldName, bool visible)
    : QObject(&tree), m_tree(tree), m_fieldName(fieldName), m_visible(visible)
{}

void TDBTreeListColumn::SetVisible(bool visible)
{
    if (m_visible == visible)
        return;
    m_visible = visible;
    m_tree.ShowColumns();
}
