#pragma once

#include "common/Tool.h"
#include "stores/engine/Database.h"
#include "stores/engine/DatabaseError.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

class Statement;

/// Runs an action on a file and adds the file's name to Firebird's errors, which name none, or a copy.
template <typename Work>
auto OnFile(const QString &path, Work work)
{
    try {
        return work();
    } catch (const DatabaseError &error) {
        throw ToolError(path + QStringLiteral(": ") + error.Text());
    }
}

/// A database file that the tool makes or reads, with one transaction. Failures are thrown as DatabaseError.
class DataFile
{
public:
    /// Makes a new file with pages of that many bytes. Throws if it exists. Without forced writes inserting is many
    /// times as fast, but the file must be synced at the end.
    void Create(const QString &path, int pageSize = 16384, bool forcedWrites = true);
    void Open(const QString &path);
    void Close();

    TpFIBDatabase &Database() { return m_database; }
    TpFIBTransaction &Transaction() { return m_transaction; }

    /// Runs the schema script of that name ("canon", "client" …).
    void RunSchema(const QString &name);
    bool HasTable(const QString &table);
    /// Names of a table's columns; none if there is no such table.
    QStringList Columns(const QString &table);
    /// All rows of a select, values as their fields give them. For small answers.
    QList<QList<QVariant>> Rows(const QString &select);
    /// Commits and closes; with `readOnly` sets Firebird's read-only mode.
    void Finish(bool readOnly);

private:
    void Configure(const QString &path);

    TpFIBDatabase m_database;
    TpFIBTransaction m_transaction;
};

/// Appends rows to one table. The columns' order is that of the values.
class RowWriter
{
public:
    RowWriter(DataFile &file, const QString &table, const QStringList &columns);
    ~RowWriter();
    /// Null QVariants are stored as null, byte arrays as blobs.
    void Append(const QList<QVariant> &values);

private:
    DataFile &m_file;
    std::unique_ptr<Statement> m_insert;
};
