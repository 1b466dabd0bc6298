#pragma once

#include <QString>

#include <functional>

/// Firebird's own backup and restore. They run inside this process, even while others have the database open; a backup
/// is a consistent snapshot. Throw DatabaseError, and leave a partly written file behind.
class BackupService
{
public:
    /// Full path of the client library.
    explicit BackupService(QString libraryName) : m_libraryName(std::move(libraryName)) {}

    /// Writes `database` to the file `backup`; an existing one is overwritten.
    void Backup(const QString &database, const QString &backup) const;
    /// Makes the new file `database` from `backup`, with calls of `onLine` as Firebird goes on. Throws if it exists.
    /// Firebird may accept a truncated backup.
    void Restore(const QString &backup, const QString &database, const std::function<void()> &onLine = {}) const;

private:
    QString m_libraryName;
};
