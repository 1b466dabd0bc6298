#pragma once

#include "stores/data/DataSet.h"

/// A table in memory with the fields declared by AddField. Rows are appended and posted as in any dataset; closing
/// empties it. Touches no database.
class TdxMemData : public TDataSet
{
    Q_OBJECT
public:
    explicit TdxMemData(QObject *owner = nullptr);

    QVariant ValueAt(int row, int field) const override;

protected:
    void DoOpen() override;
    void DoClose() override;
    int DoFetch(int most) override;
    void DoInsertRow(const QList<QVariant> &values) override;
    void DoUpdateRow(int row, const QList<QVariant> &values, const QList<QVariant> &oldValues) override;
    void DoDeleteRow(int row) override;

private:
    std::vector<QList<QVariant>> m_rows;
};
