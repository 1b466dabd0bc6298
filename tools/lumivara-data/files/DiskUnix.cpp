#include "lumivara-data/files/Disk.h"

#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t Bits = 07777, SharedBits = 0022;

/// What a file would get that a program makes for everyone.
mode_t ModeOfNew(mode_t all)
{
    // It can only be read by setting it; files that another thread makes meanwhile are its user's alone.
    const mode_t mask = ::umask(077);
    ::umask(mask);
    return all & ~mask;
}

/// By descriptor. `all` is the mode of a new one before the umask.
bool GiveRights(int descriptor, const QString &replaced, mode_t all)
{
    struct stat old = {}, own = {};
    const bool isNew = ::lstat(QFile::encodeName(replaced).constData(), &old) != 0 || S_ISLNK(old.st_mode);
    if (::fstat(descriptor, &own) != 0)
        return false;
    if (isNew)
        return ::fchmod(descriptor, ModeOfNew(all)) == 0;
    mode_t mode = old.st_mode & Bits;
    const bool isGroupKept = own.st_gid == old.st_gid || ::fchown(descriptor, uid_t(-1), old.st_gid) == 0;
    // What the old group might do is for the old group.
    if (!isGroupKept)
        mode = (mode & ~mode_t{S_IRWXG}) | ((mode & S_IRWXO) << 3);
    if (own.st_uid != old.st_uid && ::fchown(descriptor, old.st_uid, gid_t(-1)) != 0 && errno != EPERM)
        return false;
    return ::fchmod(descriptor, mode) == 0;
}

int Open(const QString &path, int flags)
{
    return ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | flags);
}

} // namespace

void BringNamesToDisk(const QString &folder)
{
    const int descriptor =
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); // the user named it
    ::fsync(descriptor);
    ::close(descriptor);
}

bool SettleFile(const QString &path, const QString &replaced)
{
    const int descriptor = Open(path, 0);
    if (descriptor < 0)
        return false;
    const auto close = qScopeGuard([=] { ::close(descriptor); });
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        return false;
    if (!S_ISREG(status.st_mode) || status.st_nlink != 1) {
        errno = EMLINK;
        return false;
    }
    return ::fsync(descriptor) == 0 && GiveRights(descriptor, replaced, 0666);
}

bool SettleFolder(const QString &path, const QString &replaced)
{
    const int descriptor = Open(path, O_DIRECTORY);
    const auto close = qScopeGuard([=] { ::close(descriptor); });
    return descriptor >= 0 && GiveRights(descriptor, replaced, 0777);
}

bool MakeSharedFolder(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    const QByteArray above = QFile::encodeName(QFileInfo(path).absolutePath());
    struct stat status = {}, parent = {};
    if (::stat(above.constData(), &parent) != 0)
        return false;
    if (::mkdir(name.constData(), 0777) != 0) {
        if (errno != EEXIST || ::lstat(name.constData(), &status) != 0)
            return false;
        const bool isTrusted = status.st_uid == ::geteuid() || status.st_uid == 0 || status.st_uid == parent.st_uid;
        errno = S_ISLNK(status.st_mode) ? ELOOP : ENOTDIR;
        return S_ISDIR(status.st_mode) || (S_ISLNK(status.st_mode) && isTrusted && QFileInfo(path).isDir());
    }
    const int descriptor = Open(path, O_DIRECTORY);
    const auto close = qScopeGuard([=] { ::close(descriptor); });
    if (descriptor < 0 || ::fstat(descriptor, &status) != 0)
        return false;
    // A group of users shares it by its group, and who may not remove others' files there may not here.
    mode_t granted = parent.st_mode & SharedBits;
    if (granted == 0 || status.st_uid != ::geteuid())
        return true;
    const bool isItsGroup = status.st_gid == parent.st_gid || ::fchown(descriptor, uid_t(-1), parent.st_gid) == 0;
    if (granted & S_IWOTH)
        granted = SharedBits;
    else if (!isItsGroup)
        granted = 0;
    return ::fchmod(descriptor, (status.st_mode & Bits) | granted | (parent.st_mode & (S_ISVTX | S_ISGID))) == 0;
}

bool RenameToNew(const QString &from, const QString &to)
{
    const QByteArray old = QFile::encodeName(from), wanted = QFile::encodeName(to);
    if (::renameat2(AT_FDCWD, old.constData(), AT_FDCWD, wanted.constData(), RENAME_NOREPLACE) == 0)
        return true;
    // Some file systems don't know of that; a second name is refused as well where the name is taken.
    return (errno == EINVAL || errno == ENOSYS) && ::link(old.constData(), wanted.constData()) == 0 &&
           ::unlink(old.constData()) == 0;
}

bool KeepUnder(const QString &path, const QString &name)
{
    const QByteArray old = QFile::encodeName(path), kept = QFile::encodeName(name);
    if (::unlink(kept.constData()) != 0 && errno != ENOENT)
        return false;
    return ::link(old.constData(), kept.constData()) == 0 || ::rename(old.constData(), kept.constData()) == 0;
}

bool ExchangeFolders(const QString &a, const QString &b)
{
    return ::renameat2(AT_FDCWD, QFile::encodeName(a).constData(), AT_FDCWD, QFile::encodeName(b).constData(),
                       RENAME_EXCHANGE) == 0;
}
