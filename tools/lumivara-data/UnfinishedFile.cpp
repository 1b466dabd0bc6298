#include "lumivara-data/UnfinishedFile.h"

#include "common/Interrupt.h"
#include "common/Tool.h"

#include <QFile>
#include <QFileInfo>

#include <filesystem>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

namespace {

#ifdef Q_OS_UNIX
bool BringToDisk(const QString &path)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool done = ::fsync(descriptor) == 0;
    ::close(descriptor);
    return done;
}
#endif

/// A new name is on the disk once its folder is.
void SettleFolderOf(const QString &path)
{
#ifdef Q_OS_UNIX
    BringToDisk(QFileInfo(path).absolutePath());
#else
    Q_UNUSED(path);
#endif
}

} // namespace

QString UnfinishedName(const QString &path)
{
    return path + u".part"_s;
}

void RemoveStale(const QString &path)
{
    if (QFileInfo::exists(path) && !QFile::remove(path))
        throw ToolError(u"%1: an unfinished file is in the way"_s.arg(path));
}

void Settle(const QString &path)
{
#ifdef Q_OS_UNIX
    if (!BringToDisk(path))
        throw ToolError(u"%1: cannot be written to the disk"_s.arg(path));
    // The engine gives a new file to its maker alone; these are for every user of the machine to read.
    QFile::setPermissions(path, QFile::permissions(path) | QFile::ReadGroup | QFile::ReadOther);
#else
    Q_UNUSED(path);
#endif
}

void Replace(const QString &from, const QString &to)
{
    std::error_code error;
    std::filesystem::rename(QFileInfo(from).filesystemFilePath(), QFileInfo(to).filesystemFilePath(), error);
    if (error)
        throw ToolError(u"%1: %2"_s.arg(to, QString::fromStdString(error.message())));
    SettleFolderOf(to);
}

void PutInPlace(const QString &from, const QString &to)
{
    if (!QFile::rename(from, to)) {
        QFile::remove(from);
        throw ToolError(u"%1: cannot be put in place"_s.arg(to));
    }
    SettleFolderOf(to);
}

FileInTheMaking::FileInTheMaking(const QString &target)
    : m_target(QFileInfo(target).absoluteFilePath()), m_path(UnfinishedName(m_target)), m_lock(m_path + u".lock"_s)
{
    NoteInterrupts();
    const QFileInfo folder(QFileInfo(m_target).absolutePath());
    if (!folder.isDir())
        throw ToolError(u"%1: there is no such folder"_s.arg(folder.filePath()));
    if (QFileInfo(m_target).isDir())
        throw ToolError(u"%1: is a folder"_s.arg(m_target));
    m_lock.setStaleLockTime(0);
    if (!m_lock.tryLock(0)) {
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
