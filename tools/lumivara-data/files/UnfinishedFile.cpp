#include "lumivara-data/files/UnfinishedFile.h"

#include "common/Interrupt.h"
#include "common/Tool.h"
#include "lumivara-data/files/Disk.h"

#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <filesystem>

using namespace Qt::StringLiterals;

namespace {

/// A new name is on the disk once its folder is.
void SettleFolderOf(const QString &path)
{
    BringToDisk(QFileInfo(path).absolutePath());
}

/// Renames over what has the name.
void Replace(const QString &from, const QString &to)
{
    std::error_code error;
    std::filesystem::rename(QFileInfo(from).filesystemFilePath(), QFileInfo(to).filesystemFilePath(), error);
    if (error)
        throw ToolError(u"%1: %2"_s.arg(to, QString::fromStdString(error.message())));
    SettleFolderOf(to);
}

/// What must not be renamed over: pipes, devices, and what its owner keeps from being written. A link may: it leads to
/// what is installed for all users, and the file takes its place.
void RefuseOddTarget(const QString &path)
{
    const QFileInfo target(path);
    if (target.isDir())
        throw ToolError(u"%1: is a folder"_s.arg(path));
    if (target.exists() && !target.isFile())
        throw ToolError(u"%1: is no regular file"_s.arg(path));
    constexpr QFileDevice::Permissions writers = QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther;
    if (target.exists() && !target.isSymLink() && (!target.isWritable() || !(target.permissions() & writers)))
        throw ToolError(u"%1: is read-only"_s.arg(path));
}

} // namespace

QString UnfinishedName(const QString &path)
{
    return path + u".part"_s;
}

QString WriteFault(const QFileDevice &file)
{
    return file.error() == QFileDevice::NoError || file.errorString() == "Unknown error"_L1 ? u"there is no room left"_s
                                                                                            : file.errorString();
}

void RemoveStale(const QString &path)
{
    if (QFileInfo::exists(path) && !QFile::remove(path))
        throw ToolError(u"%1: an unfinished file is in the way"_s.arg(path));
}

void Settle(const QString &path)
{
    if (!BringToDisk(path))
        throw ToolError(u"%1: cannot be written to the disk"_s.arg(path));
    // The engine gives a new file to its maker alone; these are for every user of the machine to read.
    QFile::setPermissions(path, QFile::permissions(path) | QFile::ReadGroup | QFile::ReadOther);
}

bool TakeLock(QLockFile &lock)
{
    lock.setStaleLockTime(0);
    if (lock.tryLock(0))
        return true;
    // A process killed before writing its id has left an empty file, which would count as locked for ever.
    constexpr unsigned long longestWriteMilliseconds = 200;
    const auto isEmpty = [&lock] {
        return QFileInfo::exists(lock.fileName()) && QFileInfo(lock.fileName()).size() == 0;
    };
    if (!isEmpty())
        return false;
    QThread::msleep(longestWriteMilliseconds);
    return isEmpty() && lock.removeStaleLockFile() && lock.tryLock(0);
}

FileInTheMaking::FileInTheMaking(const QString &target)
    : m_target(QFileInfo(target).absoluteFilePath()), m_path(UnfinishedName(m_target)), m_lock(m_path + u".lock"_s)
{
    NoteInterrupts();
    const QFileInfo folder(QFileInfo(m_target).absolutePath());
    if (!folder.isDir())
        throw ToolError(u"%1: there is no such folder"_s.arg(folder.filePath()));
    RefuseOddTarget(m_target);
    if (!TakeLock(m_lock)) {
        throw ToolError(m_lock.error() == QLockFile::LockFailedError
                            ? u"%1: another process is making this file"_s.arg(m_target)
                            : u"%1: cannot be written"_s.arg(folder.filePath()));
    }
    RemoveStale(m_path);
}

FileInTheMaking::~FileInTheMaking()
{
    QFile::remove(m_path);
}

void FileInTheMaking::Finish()
{
    ThrowIfInterrupted();
    Settle(m_path);
    Replace(m_path, m_target);
}

void FileInTheMaking::FinishNew()
{
    ThrowIfInterrupted();
    Settle(m_path);
    if (!QFile::rename(m_path, m_target))
        throw ToolError(u"%1: cannot be put in place"_s.arg(m_target));
    SettleFolderOf(m_target);
}
