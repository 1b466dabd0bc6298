#include "lumivara-data/canon/ExportFolder.h"

#include "common/Interrupt.h"
#include "common/Tool.h"
#include "lumivara-data/canon/CanonTable.h"
#include "lumivara-data/files/Disk.h"
#include "lumivara-data/files/UnfinishedFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <filesystem>

using namespace Qt::StringLiterals;

namespace {

/// Tells an export from a folder of the user's own, which no export may replace.
const QString Marker = u"made-by-lumivara-data.txt"_s;

void RefuseForeign(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists() && !info.isSymLink())
        return;
    if (info.isSymLink() || !info.isDir())
        throw ToolError(u"%1: is no folder"_s.arg(path));
    const QStringList entries =
        QDir(path).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    if (!entries.isEmpty() && !entries.contains(Marker))
        throw ToolError(u"%1: holds files and is no export"_s.arg(path));
    const QStringList ours{Marker,          QString::fromUtf16(CanonTable::FileName), u"pages"_s, u"root"_s, u"html"_s,
                           u"translation"_s};
    for (const QString &entry : entries) {
        if (!ours.contains(entry))
            throw ToolError(u"%1: \"%2\" is not of an export; it would be lost"_s.arg(path, entry));
    }
}

} // namespace

ExportFolder::ExportFolder(const QString &target)
    : m_target(QDir::cleanPath(QFileInfo(target).absoluteFilePath())), m_lock(UnfinishedName(m_target) + u".lock"_s)
{
    const QString above = QFileInfo(m_target).absolutePath();
    if (!QFileInfo(above).isDir())
        throw ToolError(u"%1: there is no such folder"_s.arg(above));
    if (!m_lock.Take())
        throw ToolError(u"%1: another process is writing this export"_s.arg(m_target));
    RefuseForeign(m_target);
    m_private.emplace(UnfinishedName(m_target));
    m_path = m_private->Path(QFileInfo(m_target).fileName());
    m_files.emplace();
    Write(Marker, "An export of lumivara-data; the next one to this place replaces the whole folder.\n");
}

ExportFolder::~ExportFolder()
{
    m_files.reset();
}

void ExportFolder::Write(const QString &name, const QByteArray &bytes)
{
    ThrowIfInterrupted();
    const QString path = m_path + u'/' + name;
    const QString folder = QFileInfo(path).path();
    if (folder != m_lastFolder && !QDir().mkpath(folder))
        throw ToolError(u"%1: cannot be made"_s.arg(folder));
    m_lastFolder = folder;
    while (!m_files->HasRoom())
        m_files->Take();
    m_files->Put(static_cast<size_t>(bytes.size()), [path, bytes] {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || file.write(bytes) != bytes.size())
            throw ToolError(u"%1: %2"_s.arg(path, WriteFault(file)));
    });
}

void ExportFolder::Finish()
{
    while (!m_files->IsEmpty())
        m_files->Take();
    ThrowIfInterrupted();
    if (!SettleFolder(m_path, m_target))
        throw ToolError(u"%1: %2"_s.arg(m_target, qt_error_string(errno)));
    Leftover::Complete(m_target, [this] { PutInPlace(); });
}

void ExportFolder::PutInPlace()
{
    // An older export goes away with the private folder.
    if (QFileInfo::exists(m_target) && ExchangeFolders(m_path, m_target))
        return;
    std::error_code error;
    const std::filesystem::path place = QFileInfo(m_target).filesystemFilePath();
    const QString old = m_private->Path(u"old"_s);
    if (QFileInfo::exists(m_target))
        std::filesystem::rename(place, QFileInfo(old).filesystemFilePath(), error);
    if (!error)
        std::filesystem::rename(QFileInfo(m_path).filesystemFilePath(), place, error);
    if (error)
        throw ToolError(u"%1: %2"_s.arg(m_target, QString::fromStdString(error.message())));
}
