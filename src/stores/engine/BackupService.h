#pragma once

#include <QString>

/// The engine's own backup and restore. They run inside this process and beside whoever has the database open; a backup
/// is the state of one moment. Failures are thrown as DatabaseError, and what was written until then stays behind.
class BackupService
{
public:
    /// Full path of the client library.
    explicit BackupService(QString libraryName) : m_libraryName(std::move(libraryName)) {}

    /// Writes `database` to the file `backup`, over one that exists.
    void Backup(const QString &database, const QString &backup) const;
    /// Makes the new file `database` out of `backup`. Throws if it exists. The engine may take the beginning of a
    /// backup for a whole one.
    void Restore(const QString &backup, const QString &database) const;

private:
    QString m_libraryName;
};
