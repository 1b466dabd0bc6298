#pragma once

#include <QByteArray>
#include <QLockFile>
#include <QMutex>
#include <QSemaphore>
#include <QString>
#include <QThreadPool>

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
    static constexpr int MostWaitingBytes = 16 * 1024 * 1024;

    void NoteFailure(const QString &failure);
    void ThrowIfFailed();

    QString m_target;
    QString m_path;
    QString m_lastFolder;
    QLockFile m_lock;
    QSemaphore m_room{MostWaitingBytes};
    QMutex m_failureLock;
    QString m_failure; ///< the first one
    QThreadPool m_writers;
};
