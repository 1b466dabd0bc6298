#pragma once

#include "common/Tool.h"
#include "lumivara-data/files/FileLock.h"
#include "lumivara-data/files/PrivateFolder.h"

#include <QFileDevice>
#include <QString>

#include <optional>

/// How a finished file gets its name: made under another one, brought to the disk, renamed. So an interruption, be it a
/// power cut, leaves the old state or the new one. Failures are thrown as ToolError.

/// The other name.
QString UnfinishedName(const QString &path);
/// Why a write has failed. A disk that became full on the way takes a part and names no error.
QString WriteFault(const QFileDevice &file);
/// Removes what an interrupted run has left under a name.
void RemoveStale(const QString &path);
/// Renames a file, over one that has that name.
void RenameOver(const QString &path, const QString &target);
/// Another process is making the same file.
class MadeElsewhere : public ToolError
{
public:
    using ToolError::ToolError;
};

/// From now on in this process no file in the making takes its name: for a trial.
void FinishNoFiles();
/// From now on in this process a file that is replaced stays beside, see NameBefore().
void KeepReplacedFiles();

/// A file that is made whole or not at all: written in a private folder beside its place, which goes away again with
/// this object. Finished, a new file gets the mode that the umask leaves, one that replaces another has its mode, and
/// until then nobody else can read it.
class FileInTheMaking
{
public:
    /// Throws ToolError where the folder of `target` can't be written, `target` is something else than a file that may
    /// be written; MadeElsewhere.
    explicit FileInTheMaking(const QString &target);

    /// Where to write; no such file exists at first, and others may be made beside it that go with this object.
    const QString &Path() const { return m_path; }
    /// Brings the file to the disk and gives it its name, over one that exists. A program that has the old file open
    /// goes on with that.
    void Finish();
    /// The same under another name in that folder, which is no result yet; with the mode of the file at `like`.
    void FinishAs(const QString &path, const QString &like);
    /// As Finish(), but refuses if the name is taken by now.
    void FinishNew();

private:
    void KeepReplaced() const;
    void Settle(const QString &replaced) const;

    QString m_target;
    QString m_path;
    FileLock m_lock;
    std::optional<PrivateFolder> m_folder;
};
