#pragma once

#include "stores/data/DataSource.h"
#include "toolkit/bound/CxGridDBTableView.h"

#include <QAbstractTableModel>

#include <vector>

class TField;

/// The rows fetched so far, as far as they were announced to the view.
class TcxGridDBTableView::Model : public QAbstractTableModel, public SourceLink
{
public:
    explicit Model(TcxGridDBTableView &view) : QAbstractTableModel(&view), m_view(view) {}

    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : m_rowCount + (m_hasPending ? 1 : 0);
    }
    int columnCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : m_columnCount; }
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    bool canFetchMore(const QModelIndex &parent) const override;
    void fetchMore(const QModelIndex &parent) override;
    /// Fetches until the row exists or the rows end; rows that take long to find come later. Reports a failure once.
    void FetchUpTo(int row);
    /// Fetches every row now.
    void FetchAll();
    /// True if no more rows will come.
    bool HasAll() const;

    void AppendColumn();
    /// Reads fields and rows from the dataset again.
    void Rebuild();

    void ActiveChanged() override { Rebuild(); }
    void DataSetChanged() override { Rebuild(); }
    void DataSetScrolled() override;
    void RecordChanged() override;
    void RowsFetched() override;

    /// The row of the dataset's cursor, -1 for none; a row being inserted comes after all others.
    int CursorRow() const;
    bool IsPending(int row) const { return m_hasPending && row == m_rowCount; }

private:
    int FieldOf(int column) const { return m_fields[static_cast<size_t>(column)]; }
    QVariant ValueOf(const TDataSet &dataSet, const QModelIndex &index) const;
    QString TextOf(TDataSet &dataSet, const QModelIndex &index) const;
    void FollowPending();
    void Fetch(void (*fetch)(TDataSet &, int), int row);
    void TakeFetched();

    TcxGridDBTableView &m_view;
    int m_rowCount = 0;
    int m_columnCount = 0;
    bool m_hasPending = false; ///< a row is being inserted, and shown behind the fetched ones
    std::vector<int> m_fields; ///< by column: index of the dataset's field, -1 if it has none of that name
    bool m_hasFailed = false;
    bool m_isTelling = false; ///< between begin- and endInsertRows; a listener that fetches more must not nest them
};
