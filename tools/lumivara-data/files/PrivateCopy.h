#pragma once

#include <QString>

/// Copies a regular file to `target`, which must not exist but for what a killed run has left, for this user alone.
/// Throws ToolError with the file's name, also where an interrupt was noted, and leaves no copy then.
void CopyPrivately(const QString &path, const QString &target);

/// A temporary copy of a database file, deleted with this object. Firebird writes to every file that it opens (header
/// page, lock files beside it) and rejects some read-only files, so a reading tool works on a copy. Firebird can only
/// read it, whatever the database tries to do.
class PrivateCopy
{
public:
    /// What a killed run has left at `copyPath` goes. Throws ToolError, also for what Firebird must not open.
    PrivateCopy(const QString &path, const QString &copyPath);
    ~PrivateCopy();
    Q_DISABLE_COPY_MOVE(PrivateCopy)

    const QString &Path() const { return m_path; }

private:
    QString m_path;
};
