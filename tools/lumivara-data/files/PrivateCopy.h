#pragma once

#include <QString>

/// A temporary copy of a database file, deleted with this object. Firebird writes to every file that it opens (header
/// page, lock files beside it) and rejects some read-only files, so a reading tool works on a copy.
class PrivateCopy
{
public:
    /// What a killed run has left at `copyPath` goes. Throws ToolError, also where an interrupt was noted.
    PrivateCopy(const QString &path, const QString &copyPath);
    ~PrivateCopy();
    Q_DISABLE_COPY_MOVE(PrivateCopy)

    const QString &Path() const { return m_path; }

private:
    void Copy(const QString &path) const;

    QString m_path;
};
