#pragma once

#include "lumivara-data/files/CsvRecords.h"

#include <QList>

/// A whole comma separated text, UTF-8, its first line the column names. Throws ToolError with `fileName` and line for
/// a text without a line, and for the first record that is damaged.
class CsvTable
{
public:
    CsvTable(const QByteArray &text, const QString &fileName);

    qsizetype RowCount() const { return m_records.size() - 1; }
    bool Has(const QString &column) const { return m_records.first().cells.contains(column.toUtf8()); }
    /// Of a row in the file, from 1.
    qsizetype Line(qsizetype row) const { return m_records[row + 1].line; }
    /// An empty cell is a null string. Throws ToolError if there is no such column.
    QString Text(qsizetype row, const QString &column) const;
    /// Throws ToolError for a cell that is not a number.
    int Number(qsizetype row, const QString &column) const;

private:
    QString m_fileName;
    QList<CsvRecord> m_records; ///< the column names first
};
