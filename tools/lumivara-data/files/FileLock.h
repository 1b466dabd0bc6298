#pragma once

#include "common/Leftover.h"

#include <QString>

#include <optional>

/// A lock between processes of all users by a file, which is empty and goes with it. The system releases the lock with
/// the process, so a file that a killed one has left holds nobody up. Links, pipes and files with a second name are
/// refused in its place.
class FileLock
{
public:
    explicit FileLock(const QString &path);
    ~FileLock();
    Q_DISABLE_COPY_MOVE(FileLock)

    /// False if another process has it. Throws ToolError if there can be no such file.
    bool Take();

private:
    QString m_path;
    int m_held = -1;
    std::optional<Leftover> m_leftover;
};
