#include "stores/engine/PathAlias.h"

#include "stores/engine/DatabaseError.h"
#include "stores/engine/FirebirdCallsUnix.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <cerrno>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Part of the path of every link, by which the function below knows them.
constexpr char AliasMark[] = "/lumivara-alias-";

constinit Real<ssize_t(const char *, char *, size_t)> RealReadLink("readlink");

std::shared_ptr<QTemporaryDir> MakeFolder()
{
    for (const QString &base : {QDir::tempPath(), QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation),
                                u"/tmp"_s, u"/var/tmp"_s}) {
        if (base.isEmpty() || base.contains(u':'))
            continue;
        auto folder = std::make_shared<QTemporaryDir>(base + QLatin1StringView(AliasMark) + u"XXXXXX"_s);
        if (folder->isValid())
            return folder;
    }
    throw DatabaseError(u"There is no temporary folder for a link, which a path with a colon needs"_s);
}

} // namespace

PathAlias::PathAlias(const QString &path) : m_path(path)
{
    if (!path.contains(u':'))
        return;
    const QFileInfo file(path);
    m_folder = MakeFolder();
    // A link to the folder serves for a file that is still to be made; a colon in the file's own name needs one to it.
    const bool isInName = file.fileName().contains(u':');
    const QString link = m_folder->filePath(isInName ? u"file"_s : u"folder"_s);
    if (!QFile::link(isInName ? file.absoluteFilePath() : file.absolutePath(), link))
        throw DatabaseError(u"A link for \"%1\" cannot be made in \"%2\""_s.arg(path, m_folder->path()));
    m_path = isInName ? link : link + u'/' + file.fileName();
}

extern "C" {

/// Firebird replaces links by what they lead to; those above it must take as they are.
ssize_t readlink(const char *path, char *buffer, size_t size) noexcept
{
    if (std::strstr(path, AliasMark) && IsEngine(__builtin_return_address(0))) {
        errno = EINVAL; // no link
        return -1;
    }
    return RealReadLink()(path, buffer, size);
}

} // extern "C"
