#pragma once

#include <QString>

/// A database file copied under a name of our own, for as long as this lives. The engine writes into whatever it opens
/// (header page, lock files beside it) and refuses some files without write permission: who only reads must do neither.
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
