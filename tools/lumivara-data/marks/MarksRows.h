#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>

class DataFile;
class Statement;

/// The columns of a table of a file of marks, in their order.
QStringList MarksColumns(const QString &table);

/// Every row of the two tables of an open file of marks, with the values of MarksColumns(): numbers, texts, bytes,
/// nulls, a time as Firebird writes it, to a ten-thousandth of a second. `done` counts the table's rows. Throws
/// DatabaseError.
void EachMarksRow(DataFile &file,
                  const std::function<void(const QString &table, const QList<QVariant> &row, qsizetype done)> &take);

/// Stores such rows in an open file that has the two tables.
class MarksRowWriter
{
public:
    explicit MarksRowWriter(DataFile &file);
    ~MarksRowWriter();
    /// Throws DatabaseError for a row that they can't hold.
    void Append(const QString &table, const QList<QVariant> &row);

private:
    DataFile &m_file;
    QString m_table; ///< of the last row
    std::unique_ptr<Statement> m_insert;
};

/// What an open file holds that a file of marks has no place for: "table X", "column Y of SUTTA_LIST", "trigger Z".
QStringList StrangeInMarks(DataFile &file);
