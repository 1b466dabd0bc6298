#include "toolkit/bound/DBTreeList.h"

#include "base/Messages.h"
#include "stores/data/DataSet.h"
#include "stores/data/DataSource.h"
#include "toolkit/bound/CellHint.h"
#include "toolkit/bound/TreeShape.h"
#include "toolkit/program/Fonts.h"
#include "toolkit/program/Guard.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>

#include <algorithm>

namespace {

constexpr Message expanded{u"đang mở", u"expanded"};
constexpr Message collapsed{u"đang đóng", u"collapsed"};

constexpr int RowHeight = 23;
constexpr int Indentation = 18;

/// Qt's own state text looks only at the first column, which shows no names.
QString StateText(bool isExpanded)
{
    return TextOrEnglish(isExpanded ? expanded : collapsed);
}

} // namespace

/// The dataset's rows as a tree. An index holds the number of its row.
class TDBTreeList::Model : public QAbstractItemModel, public SourceLink
{
public:
    explicit Model(TDBTreeList &tree) : QAbstractItemModel(&tree), m_tree(tree) {}

    static int RowOf(const QModelIndex &index) { return index.isValid() ? static_cast<int>(index.internalId()) : -1; }
    QModelIndex IndexOf(int row, int column) const
    {
        return row < 0 || row >= m_shape.RowCount()
                   ? QModelIndex()
                   : createIndex(m_shape.PositionOf(row), column, static_cast<quintptr>(row));
    }

    QModelIndex index(int position, int column, const QModelIndex &parent) const override
    {
        if (position < 0 || column < 0 || column >= columnCount({}) || parent.column() > 0)
            return {};
        const int parentRow = RowOf(parent);
        if (position >= m_shape.ChildCount(parentRow))
            return {};
        return createIndex(position, column, static_cast<quintptr>(m_shape.ChildAt(parentRow, position)));
    }
    QModelIndex parent(const QModelIndex &index) const override
    {
        return index.isValid() ? IndexOf(m_shape.ParentOf(RowOf(index)), 0) : QModelIndex();
    }
    int rowCount(const QModelIndex &parent) const override
    {
        return parent.column() > 0 ? 0 : m_shape.ChildCount(RowOf(parent));
    }
    int columnCount(const QModelIndex &) const override { return static_cast<int>(m_tree.m_columns.size()); }
    QVariant data(const QModelIndex &index, int role) const override
    {
        if (role == Qt::AccessibleDescriptionRole && m_shape.ChildCount(RowOf(index)) > 0)
            return StateText(m_tree.isExpanded(IndexOf(RowOf(index), 0)));
        if (role != Qt::DisplayRole || !index.isValid())
            return {};
        const TDataSet *dataSet = DataSet();
        const int field = m_fields[static_cast<size_t>(index.column())];
        return dataSet && dataSet->Active() && field >= 0 ? dataSet->TextAt(RowOf(index), field) : QVariant();
    }

    const TreeShape &Shape() const { return m_shape; }

    void Rebuild()
    {
        beginResetModel();
        m_shape = {};
        m_fields.assign(m_tree.m_columns.size(), -1);
        TDataSet *dataSet = DataSet();
        if (dataSet && dataSet->Active())
            Read(*dataSet);
        endResetModel();
        m_tree.ShowColumns();
        m_tree.FollowCursor();
    }

    void ActiveChanged() override { Rebuild(); }
    void DataSetChanged() override { Rebuild(); }
    void DataSetScrolled() override { m_tree.FollowCursor(); }
    void RecordChanged() override
    {
        const int row = DataSet()->RecNo();
        if (row >= 0 && row < m_shape.RowCount())
            emit dataChanged(IndexOf(row, 0), IndexOf(row, columnCount({}) - 1));
    }

private:
    void Read(TDataSet &dataSet)
    {
        std::transform(m_tree.m_columns.begin(), m_tree.m_columns.end(), m_fields.begin(),
                       [&](const TDBTreeListColumn *column) {
                           const TField *field = dataSet.FindField(column->FieldName());
                           return field ? field->Index() : -1;
                       });
        dataSet.FetchAll();
        const int keyField = dataSet.FieldByName(m_tree.m_keyField).Index();
        const int parentField = dataSet.FieldByName(m_tree.m_parentField).Index();
        const int count = dataSet.RecordCount();
        QStringList keys, parentKeys;
        keys.reserve(count);
        parentKeys.reserve(count);
        for (int row = 0; row < count; ++row) {
            keys.append(dataSet.TextAt(row, keyField));
            parentKeys.append(dataSet.TextAt(row, parentField));
        }
        m_shape = TreeShape(keys, parentKeys, m_tree.m_rootValue);
    }

    TDBTreeList &m_tree;
    TreeShape m_shape;
    std::vector<int> m_fields; ///< by column: index of the dataset's field, -1 if it has none of that name
};

/// Rows of one height, the selected node in bold. A name that is cut off shows itself as a hint.
class TDBTreeList::Delegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const override
    {
        return {0, GrownPixels(RowHeight)};
    }

    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override
    {
        if (event->type() != QEvent::ToolTip)
            return QStyledItemDelegate::helpEvent(event, view, option, index);
        QStyleOptionViewItem shown(option);
        if (view->selectionModel()->isSelected(index))
            shown.state |= QStyle::State_Selected; // and so in bold
        const int needed = QStyledItemDelegate::sizeHint(shown, index).width();
        ShowCellHint(*event, *view, index, index.isValid() && needed > view->visualRect(index).width(),
                     index.data().toString());
        return true;
    }

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        if (option->state & QStyle::State_Selected) {
            option->font.setBold(true);
            option->fontMetrics = QFontMetrics(option->font);
        }
    }
};

TDBTreeList::TDBTreeList(QWidget *parent) : QTreeView(parent), m_model(std::make_unique<Model>(*this))
{
    setItemDelegate(new Delegate(this));
    setModel(m_model.get());
    setHeaderHidden(true);
    header()->setStretchLastSection(false);
    header()->setMinimumSectionSize(0);
    setUniformRowHeights(true);
    setIndentation(Indentation);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(SingleSelection);
    setSelectionBehavior(SelectRows);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(this, &QTreeView::collapsed, this, &TDBTreeList::FocusGroup);
}

TDBTreeList::~TDBTreeList()
{
    m_model->SetDataSource(nullptr);
}

TDBTreeListColumn &TDBTreeList::AddColumn(const QString &fieldName, const QString &objectName, bool visible)
{
    auto *column = new TDBTreeListColumn(*this, fieldName, visible);
    column->setObjectName(objectName);
    m_columns.push_back(column);
    return *column;
}

TDBTreeListColumn *TDBTreeList::Column(const QString &fieldName) const
{
    const auto found = std::find_if(m_columns.begin(), m_columns.end(),
                                    [&](const auto *column) { return column->FieldName() == fieldName; });
    return found == m_columns.end() ? nullptr : *found;
}

void TDBTreeList::SetDataSource(TDataSource *dataSource)
{
    m_model->SetDataSource(dataSource);
    m_model->Rebuild();
    header()->setSectionResizeMode(QHeaderView::Stretch);
}

TDataSource *TDBTreeList::DataSource() const
{
    return m_model->DataSource();
}

void TDBTreeList::FullExpand()
{
    expandAll();
    // From the top: an earlier scroll may have been for a smaller window.
    scrollToTop();
    scrollTo(currentIndex());
}

void TDBTreeList::FullCollapse()
{
    collapseAll();
    QModelIndex top = currentIndex().siblingAtColumn(0);
    while (top.parent().isValid())
        top = top.parent();
    FocusGroup(top);
}

void TDBTreeList::FocusGroup(const QModelIndex &group)
{
    const QModelIndex current = currentIndex();
    for (QModelIndex above = current.parent(); above.isValid(); above = above.parent()) {
        if (RowOf(above) == RowOf(group)) {
            setCurrentIndex(group.siblingAtColumn(current.column()));
            return;
        }
    }
}

int TDBTreeList::RowOf(const QModelIndex &node) const
{
    return Model::RowOf(node);
}

QModelIndex TDBTreeList::NodeOf(int row) const
{
    return m_model->IndexOf(row, std::max(treePosition(), 0));
}

int TDBTreeList::RowBeside(int row, bool isAbove) const
{
    const TreeShape &shape = m_model->Shape();
    if (row < 0 || row >= shape.RowCount())
        return -1;
    return isAbove ? shape.RowBefore(row) : shape.RowAfter(row);
}

void TDBTreeList::ShowColumns()
{
    const auto first = std::find_if(m_columns.begin(), m_columns.end(), [](const auto *c) { return c->Visible(); });
    const int branches = first == m_columns.end() ? 0 : static_cast<int>(first - m_columns.begin());
    for (int column = 0; column < static_cast<int>(m_columns.size()); ++column)
        setColumnHidden(column, !m_columns[static_cast<size_t>(column)]->Visible());
    if (treePosition() != branches) {
        setTreePosition(branches);
        FollowCursor(); // the focus is in the visible column
    }
}

void TDBTreeList::FollowCursor()
{
    const QScopedValueRollback following(m_following, true);
    const TDataSet *dataSet = m_model->DataSet();
    setCurrentIndex(dataSet ? NodeOf(dataSet->RecNo()) : QModelIndex());
}

QItemSelectionModel::SelectionFlags TDBTreeList::selectionCommand(const QModelIndex &index, const QEvent *event) const
{
    // With Ctrl, or below the last node, Qt would deselect the node of the dataset's cursor.
    const QItemSelectionModel::SelectionFlags flags = QTreeView::selectionCommand(index, event);
    const bool takesOff = flags & (QItemSelectionModel::Deselect | QItemSelectionModel::Toggle);
    return takesOff || !index.isValid() ? QItemSelectionModel::NoUpdate : flags;
}

void TDBTreeList::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QTreeView::currentChanged(current, previous);
    if (m_following || !current.isValid())
        return;
    const int row = RowOf(current);
    // If a detail dataset fails, the focus returns to the dataset's cursor.
    if (!RunGuarded([&] { m_model->DataSet()->MoveTo(row); }))
        FollowCursor();
}
