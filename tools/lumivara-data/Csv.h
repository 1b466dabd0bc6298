#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// The records of a comma separated text, its first line the column names. Cells may stand in double quotes, a quote
/// inside doubled. Throws ToolError with `fileName` and line for a record of another width or an open quote.
class CsvTable
{
public:
    CsvTable(const QString &text, const QString &fileName);

    qsizetype RowCount() const { return m_rows.size(); }
    /// An empty cell is a null string. Throws ToolError if there is no such column.
    QString Text(qsizetype row, const QString &column) const;
    /// Throws ToolError for a cell that is no number.
    int Number(qsizetype row, const QString &column) const;

private:
    struct Row
    {
        int line;
        QStringList cells;
    };
    void Append(Row row);

    QString m_fileName;
    QStringList m_columns;
    QList<Row> m_rows;
};
