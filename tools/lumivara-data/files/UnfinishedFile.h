#pragma once

#include <QFileDevice>
#include <QLockFile>
#include <QString>

/// How a finished file gets its name: made under another one, brought to the disk, renamed. So an interruption, be it a
/// power cut, leaves the old state or the new one. Failures are thrown as ToolError.

/// The other name.
QString UnfinishedName(const QString &path);
/// Why a write has failed. A disk that became full on the way takes a part and names no error.
QString WriteFault(const QFileDevice &file);
/// Removes what an interrupted run has left under a name.
void RemoveStale(const QString &path);
/// Brings a file's bytes to the disk and lets every user read it.
void Settle(const QString &path);

/// Takes a lock that ends with its process, without waiting.
bool TakeLock(QLockFile &lock);

/// A file that is made whole or not at all: written under the other name, which goes away again unless Finish() is
/// reached. Interrupts wait for ThrowIfInterrupted() from the first of these on.
class FileInTheMaking
{
public:
    /// Throws ToolError where the folder of `target` can't be written, `target` is something else than a file that may
    /// be written, or another process is making the same file.
    explicit FileInTheMaking(const QString &target);
    ~FileInTheMaking();
    Q_DISABLE_COPY_MOVE(FileInTheMaking)

    /// Where to write; no such file exists at first.
    const QString &Path() const { return m_path; }
    /// Brings the file to the disk and gives it its name, over one that exists. A program that has the old file open
    /// goes on with that.
    void Finish();
    /// The same, but refuses if the name is taken by now.
    void FinishNew();

private:
    QString m_target;
    QString m_path;
    QLockFile m_lock;
};
