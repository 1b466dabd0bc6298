#pragma once

#include "common/InOrder.h"

#include <QByteArray>
#include <QLockFile>
#include <QString>

#include <optional>

/// A folder that is written under another name and takes its own once it is whole, in place of an older export of the
/// same name. Throws ToolError where something else stands there.
class ExportFolder
{
public:
    explicit ExportFolder(const QString &target);
    ~ExportFolder();
    Q_DISABLE_COPY_MOVE(ExportFolder)

    /// Writes a file, its folders included, soon and on a thread of its own; a failure is thrown by a later call.
    /// `name` is relative.
    void Write(const QString &name, const QByteArray &bytes);
    /// Waits for all files. Throws ToolError, also for those that could not be written.
    void Finish();

private:
    QString m_target;
    QString m_path;
    QString m_lastFolder;
    QLockFile m_lock;
    /// File systems make the files of one folder one after the other: more threads than two would wait.
    std::optional<InOrder<void>> m_files;
};
