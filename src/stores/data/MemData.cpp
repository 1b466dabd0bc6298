#include "stores/data/MemData.h"

TdxMemData::TdxMemData(QObject *owner) : TDataSet(owner) {}

QVariant TdxMemData::ValueAt(int row, int field) const
{
    if (row < 0 || static_cast<size_t>(row) >= m_rows.size())
        return {};
    return m_rows[static_cast<size_t>(row)].value(field);
}

void TdxMemData::DoOpen()
{
    m_rows.clear();
}

void TdxMemData::DoClose()
{
    m_rows.clear();
}

int TdxMemData::DoFetch(int)
{
    return 0;
}

void TdxMemData::DoInsertRow(const QList<QVariant> &values)
{
    m_rows.push_back(values);
}

void TdxMemData::DoUpdateRow(int row, const QList<QVariant> &values, const QList<QVariant> &oldValues)
{
    Q_UNUSED(oldValues)
    QList<QVariant> &stored = m_rows[static_cast<size_t>(row)];
    for (int i = 0; i < values.size(); ++i) {
        if (!values[i].canConvert<UnreadBlob>())
            stored[i] = values[i];
    }
}

void TdxMemData::DoDeleteRow(int row)
{
    m_rows.erase(m_rows.begin() + row);
}
