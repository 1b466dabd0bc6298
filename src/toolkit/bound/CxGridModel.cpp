#include "toolkit/bound/CxGridModel.h"

#include "stores/data/DataSet.h"
#include "toolkit/program/Guard.h"

#include <QScopedValueRollback>

#include <algorithm>

namespace {

const TField &FieldAt(const TDataSet &dataSet, int field)
{
    return *dataSet.Fields()[static_cast<size_t>(field)];
}

} // namespace

QVariant TcxGridDBTableView::Model::data(const QModelIndex &index, int role) const
{
    TDataSet *dataSet = OpenDataSet();
    const bool isKnown = role == Qt::DisplayRole || role == Qt::DecorationRole || role == Qt::AccessibleTextRole;
    if (!isKnown || !index.isValid() || !dataSet)
        return {};
    // An unreadable text is an empty cell: Qt asks while painting and must not see an exception.
    try {
        const TcxGridDBColumn &column = *m_view.m_columns[static_cast<size_t>(index.column())];
        const QMap<int, QIcon> &images = column.Images();
        if (role == Qt::AccessibleTextRole)
            return column.OnDescribe ? column.OnDescribe(ValueOf(*dataSet, index).toInt()) : TextOf(*dataSet, index);
        if (images.isEmpty() == (role == Qt::DecorationRole))
            return {};
        if (role == Qt::DecorationRole)
            return images.value(ValueOf(*dataSet, index).toInt());
        return TextOf(*dataSet, index);
    } catch (const std::exception &) {
        return {};
    }
}

QString TcxGridDBTableView::Model::TextOf(TDataSet &dataSet, const QModelIndex &index) const
{
    const int field = FieldOf(index.column());
    if (!IsPending(index.row()))
        return dataSet.DisplayTextAt(index.row(), field);
    return field < 0 ? QString() : FieldAt(dataSet, field).DisplayText();
}

QVariant TcxGridDBTableView::Model::ValueOf(const TDataSet &dataSet, const QModelIndex &index) const
{
    const int field = FieldOf(index.column());
    if (field < 0)
        return {};
    // The row that is being edited or inserted shows its pending values.
    return index.row() == CursorRow() ? FieldAt(dataSet, field).Value() : dataSet.ValueAt(index.row(), field);
}

QVariant TcxGridDBTableView::Model::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= m_columnCount)
        return {};
    if (role == Qt::TextAlignmentRole)
        return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    const TcxGridDBColumn *column = m_view.m_columns[static_cast<size_t>(section)];
    if (role != Qt::DisplayRole || !column->Images().isEmpty())
        return {};
    const TField *field = DataSet() ? DataSet()->FindField(column->FieldName()) : nullptr;
    return column->Caption().isEmpty() && field ? field->DisplayLabel() : column->Caption();
}

bool TcxGridDBTableView::Model::canFetchMore(const QModelIndex &parent) const
{
    const TDataSet *dataSet = OpenDataSet();
    return !parent.isValid() && dataSet && !m_hasFailed && !m_isTelling &&
           (!dataSet->AllFetched() || dataSet->RecordCount() > m_rowCount);
}

void TcxGridDBTableView::Model::fetchMore(const QModelIndex &)
{
    FetchUpTo(m_rowCount + m_view.RowsOnScreen() - 1);
}

void TcxGridDBTableView::Model::FetchUpTo(int row)
{
    Fetch([](TDataSet &dataSet, int goal) { dataSet.FetchAhead(goal); }, row);
}

void TcxGridDBTableView::Model::FetchAll()
{
    Fetch([](TDataSet &dataSet, int) { dataSet.FetchAll(); }, 0);
}

void TcxGridDBTableView::Model::Fetch(void (*fetch)(TDataSet &, int), int row)
{
    TDataSet *dataSet = OpenDataSet();
    if (!dataSet || m_hasFailed || m_isTelling)
        return;
    // The view asks repeatedly; one failure is reported once.
    m_hasFailed = !RunGuarded([&] { fetch(*dataSet, row); });
    TakeFetched();
}

bool TcxGridDBTableView::Model::HasAll() const
{
    const TDataSet *dataSet = OpenDataSet();
    return !dataSet || m_hasFailed || dataSet->AllFetched();
}

void TcxGridDBTableView::Model::AppendColumn()
{
    beginInsertColumns({}, m_columnCount, m_columnCount);
    ++m_columnCount;
    m_fields.push_back(-1);
    endInsertColumns();
}

void TcxGridDBTableView::Model::Rebuild()
{
    TDataSet *dataSet = OpenDataSet();
    beginResetModel();
    m_isTelling = true;
    m_hasFailed = false;
    m_rowCount = dataSet ? dataSet->RecordCount() : 0;
    m_hasPending = dataSet && dataSet->State() == DataSetState::Insert;
    std::transform(m_view.m_columns.begin(), m_view.m_columns.end(), m_fields.begin(),
                   [dataSet](const TcxGridDBColumn *column) {
                       const TField *field = dataSet ? dataSet->FindField(column->FieldName()) : nullptr;
                       return field ? field->Index() : -1;
                   });
    endResetModel();
    m_isTelling = false;
    FetchUpTo(m_view.RowsOnScreen());
    m_view.FillWidth();
    m_view.FollowCursor();
}

void TcxGridDBTableView::Model::DataSetScrolled()
{
    TakeFetched();
    m_view.FollowCursor();
}

void TcxGridDBTableView::Model::RecordChanged()
{
    FollowPending();
    const int row = CursorRow();
    if (row >= 0 && row < rowCount() && m_columnCount > 0)
        emit dataChanged(index(row, 0), index(row, m_columnCount - 1));
}

void TcxGridDBTableView::Model::RowsFetched()
{
    TakeFetched();
    m_view.ClaimRows();
    m_view.viewport()->update(); // perhaps there are none
}

int TcxGridDBTableView::Model::CursorRow() const
{
    const TDataSet *dataSet = OpenDataSet();
    if (!dataSet)
        return -1;
    return m_hasPending ? m_rowCount : dataSet->RecNo();
}

void TcxGridDBTableView::Model::FollowPending()
{
    const TDataSet *dataSet = OpenDataSet();
    const bool hasPending = dataSet && dataSet->State() == DataSetState::Insert;
    if (hasPending == m_hasPending)
        return;
    // When a row is removed its focus moves to another row; that must not move the cursor.
    const QScopedValueRollback following(m_view.m_following, true);
    if (hasPending)
        beginInsertRows({}, m_rowCount, m_rowCount);
    else
        beginRemoveRows({}, m_rowCount, m_rowCount);
    m_hasPending = hasPending;
    if (hasPending)
        endInsertRows();
    else
        endRemoveRows();
    m_view.FollowCursor();
}

void TcxGridDBTableView::Model::TakeFetched()
{
    const TDataSet *dataSet = OpenDataSet();
    const int fetched = dataSet ? dataSet->RecordCount() : 0;
    if (fetched <= m_rowCount)
        return;
    const QScopedValueRollback telling(m_isTelling, true);
    beginInsertRows({}, m_rowCount, fetched - 1);
    m_rowCount = fetched;
    endInsertRows();
}
