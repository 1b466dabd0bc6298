#include "lumivara-data/files/UnfinishedFile.h"

#include "base/Messages.h"
#include "common/Interrupt.h"
#include "lumivara-data/files/Disk.h"
#include "stores/Schema.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <filesystem>

using namespace Qt::StringLiterals;

namespace {

bool finishesNothing = false;
bool keepsReplaced = false;

/// What must not be renamed over: pipes, devices, and what its owner keeps from being written. A link may: it leads to
/// what is installed for all users, and the file takes its place.
void RefuseOddTarget(const QString &path)
{
    const QFileInfo target(path);
    if (target.isDir())
        throw ToolError(Sentence({u"%1: là một thư mục", u"%1: is a folder"}).arg(path));
    if (target.exists() && !target.isFile())
        throw ToolError(Sentence({u"%1: không phải là tệp thường", u"%1: is no regular file"}).arg(path));
    constexpr QFileDevice::Permissions writers = QFile::WriteOwner | QFile::WriteGroup | QFile::WriteOther;
    if (target.exists() && !target.isSymLink() && (!target.isWritable() || !(target.permissions() & writers)))
        throw ToolError(Sentence({u"%1: chỉ đọc được", u"%1: is read-only"}).arg(path));
}

} // namespace

QString UnfinishedName(const QString &path)
{
    return path + u".part"_s;
}

QString WriteFault(const QFileDevice &file)
{
    return file.error() == QFileDevice::NoError || file.errorString() == "Unknown error"_L1
               ? Sentence({u"không còn chỗ trống", u"there is no room left"})
               : file.errorString();
}

void RemoveStale(const QString &path)
{
    if (QFileInfo::exists(path) && !QFile::remove(path))
        throw ToolError(
            Sentence({u"%1: một tệp dở dang đang chiếm chỗ", u"%1: an unfinished file is in the way"}).arg(path));
}

void RenameOver(const QString &path, const QString &target)
{
    std::error_code error;
    std::filesystem::rename(QFileInfo(path).filesystemFilePath(), QFileInfo(target).filesystemFilePath(), error);
    if (error)
        throw ToolError(u"%1: %2"_s.arg(target, QString::fromStdString(error.message())));
}

FileInTheMaking::FileInTheMaking(const QString &target)
    : m_target(QFileInfo(target).absoluteFilePath()), m_lock(UnfinishedName(m_target) + u".lock"_s)
{
    const QFileInfo folder(QFileInfo(m_target).absolutePath());
    if (!folder.isDir())
        throw ToolError(Sentence({u"%1: không có thư mục này", u"%1: there is no such folder"}).arg(folder.filePath()));
    RefuseOddTarget(m_target);
    if (!m_lock.Take())
        throw MadeElsewhere(
            Sentence({u"%1: một tiến trình khác đang tạo tệp này", u"%1: another process is making this file"})
                .arg(m_target));
    m_folder.emplace(UnfinishedName(m_target));
    m_path = m_folder->Path(QFileInfo(m_target).fileName());
}

void FinishNoFiles()
{
    finishesNothing = true;
}

void KeepReplacedFiles()
{
    keepsReplaced = true;
}

void FileInTheMaking::KeepReplaced() const
{
    if (QFileInfo::exists(m_target) && !KeepUnder(m_target, NameBefore(m_target)))
        throw ToolError(Sentence({u"%1: không giữ lại được tệp cũ: %2", u"%1: the old file can't be kept: %2"})
                            .arg(NameBefore(m_target), qt_error_string(errno)));
}

void FileInTheMaking::Settle(const QString &replaced) const
{
    ThrowIfInterrupted();
    if (!SettleFile(m_path, replaced))
        throw ToolError(Sentence({u"%1: không ghi được xuống đĩa: %2", u"%1: cannot be written to the disk: %2"})
                            .arg(m_target, qt_error_string(errno)));
}

void FileInTheMaking::Finish()
{
    if (finishesNothing)
        return;
    Settle(m_target);
    if (keepsReplaced)
        KeepReplaced();
    Leftover::Complete(m_target, [this] { RenameOver(m_path, m_target); });
    BringNamesToDisk(QFileInfo(m_target).absolutePath());
}

void FileInTheMaking::FinishAs(const QString &path, const QString &like)
{
    Settle(like);
    RenameOver(m_path, path);
    BringNamesToDisk(QFileInfo(path).absolutePath());
}

void FileInTheMaking::FinishNew()
{
    Settle({});
    Leftover::Complete(m_target, [this] {
        if (!RenameToNew(m_path, m_target))
            throw ToolError(Sentence({u"%1: không đặt được vào chỗ: %2", u"%1: cannot be put in place: %2"})
                                .arg(m_target, qt_error_string(errno)));
    });
    BringNamesToDisk(QFileInfo(m_target).absolutePath());
}
