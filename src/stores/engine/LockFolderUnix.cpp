#include "stores/engine/LockFolder.h"

#include "stores/engine/DatabaseError.h"
#include "stores/engine/FirebirdCallsUnix.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QScopeGuard>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr mode_t everyUser = 0666;
/// More than Firebird's lock, event and trace files take together.
constexpr off_t roomForAll = off_t{4} * 1024 * 1024;

/// The guarded folder: its path with a separator at the end, and a descriptor, so that a folder put in its place
/// changes nothing.
struct Place
{
    std::string path;
    int descriptor;
};

/// Never freed: Firebird's threads may be using the last one. There is one for each time that the folder was replaced.
std::atomic<const Place *> thePlace{nullptr};

/// The name of a lock file below the guarded folder; null for any other path.
const char *NameInPlace(const Place *place, const char *path)
{
    if (!place || !path || std::strncmp(path, place->path.c_str(), place->path.size()) != 0)
        return nullptr;
    const char *name = path + place->path.size();
    return *name != '\0' && !std::strchr(name, '/') ? name : nullptr;
}

/// Files that another one removed meanwhile have no name left; Firebird knows of that and tries again.
bool IsLockFile(const struct stat &status)
{
    return S_ISREG(status.st_mode) && status.st_nlink <= 1;
}

bool MayOpenToAll(const struct stat &status)
{
    return status.st_uid == ::geteuid() || ::geteuid() == 0;
}

/// Opens a lock file for Firebird; errno if it fails.
int OpenInPlace(const Place &place, const char *name, int flags, mode_t mode)
{
    constexpr int mostTries = 10;
    constexpr timespec pause{0, 20'000'000};
    int descriptor = -1;
    // Another user's process that is starting right now has made the file and not opened it to others yet.
    for (int tries = 1;; ++tries) {
        descriptor = ::openat(place.descriptor, name, flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, mode);
        if (descriptor >= 0 || errno != EACCES || tries == mostTries)
            break;
        ::nanosleep(&pause, nullptr);
    }
    if (descriptor < 0)
        return -1;
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0 || !IsLockFile(status)) {
        ::close(descriptor);
        errno = EMLINK;
        return -1;
    }
    if ((flags & O_CREAT) && MayOpenToAll(status) && (status.st_mode & everyUser) != everyUser)
        ::fchmod(descriptor, everyUser);
    return descriptor;
}

constinit Real<int(const char *, int, ...)> RealOpen("open64");
constinit Real<int(const char *, mode_t)> RealChmod("chmod");
constinit Real<int(const char *, uid_t, gid_t)> RealChown("chown");

[[noreturn]] void Refuse(const QString &path, const QString &why)
{
    throw DatabaseError(u"The lock file \"%1\" %2"_s.arg(path, why));
}

[[noreturn]] void ThrowDiskFull(const QString &folder)
{
    throw DatabaseError(u"No space left on device for the lock files in \"%1\""_s.arg(folder));
}

/// Reserves the whole of a file of the lock folder; false on a full disk.
bool Allocate(int descriptor, off_t size)
{
    const int error = size > 0 ? ::posix_fallocate(descriptor, 0, size) : 0;
    return error != ENOSPC && error != EDQUOT;
}

QStringList LockFiles(const QString &folder)
{
    // "fb_lock…" belongs to the client library, "fb12_monitor…" and "fb12_trace" to the engine plug-in.
    return QDir(folder).entryList({u"fb*"_s}, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

/// The folder by descriptor, if it is a real one; -1 else.
int OpenFolder(const QString &folder)
{
    return ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

void TakeOutTraps(const QString &folder, int descriptor)
{
    for (const QString &file : LockFiles(folder)) {
        const QByteArray name = QFile::encodeName(file);
        struct stat status = {};
        if (::fstatat(descriptor, name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0 || IsLockFile(status))
            continue;
        const QString path = folder + u'/' + file;
        // It may be the one that other processes are locking: they would never see a new file's locks.
        if (S_ISREG(status.st_mode))
            Refuse(path, u"has a second name. Remove it while no program has the databases open."_s);
        if (::unlinkat(descriptor, name.constData(), S_ISDIR(status.st_mode) ? AT_REMOVEDIR : 0) != 0)
            Refuse(path, u"is no regular file, and cannot be removed: %1"_s.arg(qt_error_string(errno)));
    }
}

int OpenToLock(int folder, const char *name)
{
    return ::openat(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
}

/// Removes the files of trace sessions, which a killed process leaves for good. They are dead when nobody holds the
/// table of sessions. Firebird opens that one under the lock of fb_init, and so does this, without waiting.
void RemoveDeadSessions(const QString &folder, int descriptor)
{
    const QStringList sessions = LockFiles(folder).filter(QRegularExpression(u"^fb_trace_.{6}$"_s));
    if (sessions.isEmpty())
        return;
    const int door = OpenToLock(descriptor, "fb_init");
    const bool isIn = door >= 0 && ::flock(door, LOCK_EX | LOCK_NB) == 0;
    const int table = OpenToLock(descriptor, "fb12_trace");
    const bool isTableUnused = table < 0 ? errno == ENOENT : ::flock(table, LOCK_EX | LOCK_NB) == 0;
    if (isIn && isTableUnused) {
        for (const QString &session : sessions)
            ::unlinkat(descriptor, QFile::encodeName(session).constData(), 0);
    }
    ::close(table);
    ::close(door);
}

} // namespace

bool LockFolder::Make(const QString &folder, Users users)
{
    const mode_t mode = users == Users::Self ? 0700 : 0777;
    const bool isNew = ::mkdir(QFile::encodeName(folder).constData(), mode) == 0;
    const int descriptor = OpenFolder(folder);
    if (descriptor < 0)
        return false;
    const auto close = qScopeGuard([=] { ::close(descriptor); });
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        return false;
    const bool isOwn = status.st_uid == ::geteuid();
    if (users == Users::Self && !isOwn)
        return false;
    // mkdir applies the umask, so set the mode. If the folder is another user's, that user's copy has done so.
    if (isOwn && (isNew || users != Users::Chosen))
        ::fchmod(descriptor, mode);
    return ::faccessat(descriptor, ".", R_OK | W_OK | X_OK, AT_EACCESS) == 0;
}

void LockFolder::Guard(const QString &folder)
{
    const int descriptor = OpenFolder(folder);
    if (descriptor < 0) {
        if (errno == ELOOP || errno == ENOTDIR)
            throw DatabaseError(u"The lock folder \"%1\" is no folder of its own"_s.arg(folder));
        return; // Firebird itself reports what fails there
    }
    auto close = qScopeGuard([=] { ::close(descriptor); });
    TakeOutTraps(folder, descriptor);
    RemoveDeadSessions(folder, descriptor);
    const std::string path = QFile::encodeName(folder + u'/').toStdString();
    struct stat now = {}, before = {};
    const Place *known = thePlace.load();
    if (known && known->path == path && ::fstat(descriptor, &now) == 0 && ::fstat(known->descriptor, &before) == 0 &&
        now.st_dev == before.st_dev && now.st_ino == before.st_ino)
        return;
    close.dismiss();
    thePlace.store(new Place{path, descriptor});
}

void LockFolder::RequireRoom(const QString &folder)
{
    // Firebird maps sparse files and dies of a signal if the disk has no room for their pages. So check first.
    QByteArray probe = QFile::encodeName(folder + u"/room-XXXXXX"_s);
    const int descriptor = ::mkostemp(probe.data(), O_CLOEXEC);
    if (descriptor < 0) {
        if (errno == ENOSPC || errno == EDQUOT)
            ThrowDiskFull(folder);
        return; // Firebird itself reports what fails there
    }
    const bool hasRoom = Allocate(descriptor, roomForAll);
    ::unlink(probe.constData());
    ::close(descriptor);
    if (!hasRoom)
        ThrowDiskFull(folder);
}

void LockFolder::Settle(const QString &folder)
{
    const int place = OpenFolder(folder);
    if (place < 0)
        return;
    const auto close = qScopeGuard([=] { ::close(place); });
    for (const QString &file : LockFiles(folder)) {
        const int descriptor =
            ::openat(place, QFile::encodeName(file).constData(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
        if (descriptor < 0)
            continue;
        struct stat status = {};
        bool hasRoom = true;
        if (::fstat(descriptor, &status) == 0 && IsLockFile(status)) {
            // Where a file was made by an older copy, or by a Firebird of the system's own.
            if (MayOpenToAll(status) && (status.st_mode & everyUser) != everyUser)
                ::fchmod(descriptor, everyUser);
            hasRoom = Allocate(descriptor, status.st_size);
        }
        ::close(descriptor);
        if (!hasRoom)
            ThrowDiskFull(folder);
    }
}

// Firebird's own calls arrive here, see SharedLocksUnix.cpp. It opens lock files by path, following links, gives them
// to the system user "firebird" where it runs as root, and takes them from all users but the owner's group, each time
// that it opens one. Names other than the C library's for the compiler, whose headers declare those in other ways.
extern "C" {

int OpenForEngine(const char *path, int flags, ...) __asm__("open64");
int ChmodForEngine(const char *path, mode_t mode) __asm__("chmod");
int ChownForEngine(const char *path, uid_t owner, gid_t group) __asm__("chown");

int OpenForEngine(const char *path, int flags, ...)
{
    mode_t mode = 0;
    if ((flags & O_CREAT) || (flags & O_TMPFILE) == O_TMPFILE) {
        va_list rest;
        va_start(rest, flags);
        mode = va_arg(rest, mode_t);
        va_end(rest);
    }
    const Place *place = thePlace.load(std::memory_order_acquire);
    const char *name = NameInPlace(place, path);
    return name && IsEngine(__builtin_return_address(0)) ? OpenInPlace(*place, name, flags, mode)
                                                         : RealOpen()(path, flags, mode);
}

int ChmodForEngine(const char *path, mode_t mode)
{
    const bool isSettled = NameInPlace(thePlace.load(), path) && IsEngine(__builtin_return_address(0));
    return isSettled ? 0 : RealChmod()(path, mode);
}

int ChownForEngine(const char *path, uid_t owner, gid_t group)
{
    const bool isSettled = NameInPlace(thePlace.load(), path) && IsEngine(__builtin_return_address(0));
    return isSettled ? 0 : RealChown()(path, owner, group);
}

} // extern "C"
