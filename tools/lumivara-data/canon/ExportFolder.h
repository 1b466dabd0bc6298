#pragma once

#include "common/InOrder.h"
#include "lumivara-data/files/FileLock.h"
#include "lumivara-data/files/PrivateFolder.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// A folder that is written under another name and renamed when it is complete, replacing an older export. Throws
/// ToolError if the name is taken by anything else.
class ExportFolder
{
public:
    explicit ExportFolder(const QString &target);
    ~ExportFolder();
    Q_DISABLE_COPY_MOVE(ExportFolder)

    /// Writes a file and its folders in the background; a failure is thrown by a later call.
    /// `name` is relative.
    void Write(const QString &name, const QByteArray &bytes);
    /// Waits for all files. Throws ToolError, also for those that could not be written.
    void Finish();

private:
    void PutInPlace();

    QString m_target;
    QString m_path;
    QString m_lastFolder;
    FileLock m_lock;
    std::optional<PrivateFolder> m_private;
    /// File systems make the files of one folder one after the other: more threads than two would wait.
    std::optional<InOrder<void>> m_files;
};
