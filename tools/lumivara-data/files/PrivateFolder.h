#pragma once

#include "common/Leftover.h"

#include <QString>

#include <optional>

/// A new folder of mode 0700 for unfinished work: no other user sees or changes what is in it. Removed with all of
/// that, also by an interrupt; what a killed process of this user has left under such a name is removed by the next
/// one.
class PrivateFolder
{
public:
    /// Makes the folder PREFIX-XXXXXX; `prefix` is a full path. Throws ToolError.
    explicit PrivateFolder(const QString &prefix);
    /// One in the system's temporary folder.
    static QString TemporaryPrefix();
    ~PrivateFolder();
    Q_DISABLE_COPY_MOVE(PrivateFolder)

    QString Path(const QString &name = {}) const;

private:
    bool Hold(const QString &path);

    int m_held = -1; ///< the folder, locked
    std::optional<Leftover> m_leftover;
};

/// Gives the engine a lock folder of this process's own, unless it has one. For databases that no other process opens,
/// because they are being made or are private copies: two lock folders on one file would lose rows. Call before the
/// first is opened. The folder goes at the end of the process. Throws ToolError.
void UsePrivateLocks();
