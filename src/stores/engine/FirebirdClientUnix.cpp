#include "stores/engine/FirebirdClient.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <cerrno>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <ibase.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

/// In SharedLocksUnix.cpp: keeps Firebird's locks usable after another process was killed inside one.
void KeepSharedLocks();

namespace {

/// More than Firebird's lock, event and trace files take together.
constexpr off_t LockFileRoom = off_t{4} * 1024 * 1024;

std::unique_ptr<FirebirdClient> &TheClient()
{
    // Never destroyed: Firebird has its own threads, and attachments may outlive static objects.
    static auto *client = new std::unique_ptr<FirebirdClient>;
    return *client;
}

QString &ChosenLockFolder()
{
    static QString folder;
    return folder;
}

bool MakeFolder(const QString &folder, mode_t mode)
{
    const QByteArray path = QFile::encodeName(folder);
    if (::mkdir(path.constData(), mode) != 0 && errno != EEXIST)
        return false;
    struct stat status = {};
    if (::stat(path.constData(), &status) != 0 || !S_ISDIR(status.st_mode))
        return false;
    // mkdir applies the umask, so set the mode. If the folder is another user's, that user's copy has done so.
    if (status.st_uid == ::geteuid())
        ::chmod(path.constData(), mode);
    return ::access(path.constData(), R_OK | W_OK | X_OK) == 0;
}

QString PrivateLockFolder()
{
    QString base = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (base.isEmpty())
        base = QDir::tempPath();
    return base + u"/lumivara-lock-"_s + QString::number(::getuid());
}

/// Reserves the whole of a file of the lock folder; false on a full disk.
bool Allocate(int descriptor, off_t size)
{
    const int error = size > 0 ? ::posix_fallocate(descriptor, 0, size) : 0;
    return error != ENOSPC && error != EDQUOT;
}

[[noreturn]] void ThrowDiskFull(const QString &folder)
{
    throw DatabaseError(u"No space left on device for the lock files in \"%1\""_s.arg(folder));
}

} // namespace

void EngineStatus::checkException(EngineStatus *status)
{
    if (!status->dirty || !(status->getState() & IStatus::STATE_ERRORS))
        return;
    char buffer[8192];
    const unsigned length = FirebirdClient::Instance().Util()->formatStatus(buffer, sizeof buffer, status->status);
    QString text = QString::fromUtf8(buffer, static_cast<qsizetype>(length));
    text.replace(u"\n-"_s, u"\n"_s);
    throw DatabaseError(text, static_cast<int>(status->getErrors()[1]));
}

FirebirdClient::FirebirdClient(void *library, Firebird::IMaster *master, const QString &lockFolder, bool shared)
    : m_library(library), m_master(master), m_util(master->getUtilInterface()), m_provider(master->getDispatcher()),
      m_status(master->getStatus()), m_lockFolder(lockFolder), m_locksAreShared(shared)
{}

FirebirdClient &FirebirdClient::Instance()
{
    if (!TheClient())
        throw DatabaseError(u"The database client library is not loaded"_s);
    return *TheClient();
}

void FirebirdClient::SetLockFolder(const QString &folder)
{
    ChosenLockFolder() = folder;
}

FirebirdClient &FirebirdClient::Load(const QString &libraryPath, const QString &databasePath)
{
    if (TheClient())
        return *TheClient();
    KeepSharedLocks();
    void *library = ::dlopen(QFile::encodeName(libraryPath).constData(), RTLD_NOW | RTLD_LOCAL);
    if (!library)
        throw DatabaseError(QString::fromLocal8Bit(::dlerror()));
    using MasterFunction = Firebird::IMaster *(*)();
    const auto masterFunction = reinterpret_cast<MasterFunction>(::dlsym(library, "fb_get_master_interface"));
    if (!masterFunction) {
        const QString text = QString::fromLocal8Bit(::dlerror());
        ::dlclose(library);
        throw DatabaseError(text);
    }

    QString lockFolder = ChosenLockFolder();
    if (lockFolder.isEmpty())
        lockFolder = QFileInfo(databasePath).absolutePath() + u"/lock"_s;
    const bool shared = MakeFolder(lockFolder, 0777);
    if (!shared) {
        lockFolder = PrivateLockFolder();
        MakeFolder(lockFolder, 0700);
    }
    // With links resolved, because through a link Firebird does not find all its character sets.
    const QFileInfo root(QFileInfo(libraryPath).absolutePath() + u"/firebird"_s);
    qputenv("FIREBIRD", QFile::encodeName(root.exists() ? root.canonicalFilePath() : root.filePath()));
    qputenv("FIREBIRD_LOCK", QFile::encodeName(lockFolder));
    qputenv("FIREBIRD_TMP", QFile::encodeName(QDir::tempPath()));
    TheClient().reset(new FirebirdClient(library, masterFunction(), lockFolder, shared));
    return *TheClient();
}

bool FirebirdClient::PrintBody(const QByteArray &body, const std::function<void(QByteArrayView line)> &take) const
{
    using Line = void (*)(void *user, ISC_SHORT offset, const char *line);
    using Print = int (*)(const ISC_UCHAR *body, ISC_ULONG length, Line line, void *user, ISC_SHORT language);
    const auto print = reinterpret_cast<Print>(::dlsym(m_library, "fb_print_blr"));
    if (!print)
        return false;
    const Line passOn = [](void *user, ISC_SHORT, const char *line) {
        (*static_cast<const std::function<void(QByteArrayView)> *>(user))(line);
    };
    return print(reinterpret_cast<const ISC_UCHAR *>(body.constData()), static_cast<ISC_ULONG>(body.size()), passOn,
                 const_cast<void *>(static_cast<const void *>(&take)), 0) == 0;
}

void FirebirdClient::PrepareLockFolder()
{
    if (!QFileInfo::exists(m_lockFolder))
        MakeFolder(m_lockFolder, m_locksAreShared ? 0777 : 0700);
    // Firebird maps sparse files and dies of a signal if the disk has no room for their pages. So check first.
    QByteArray probe = QFile::encodeName(m_lockFolder + u"/room-XXXXXX"_s);
    const int descriptor = ::mkstemp(probe.data());
    if (descriptor < 0) {
        if (errno == ENOSPC || errno == EDQUOT)
            ThrowDiskFull(m_lockFolder);
        return; // Firebird itself reports what fails there
    }
    const bool room = Allocate(descriptor, LockFileRoom);
    ::unlink(probe.constData());
    ::close(descriptor);
    if (!room)
        ThrowDiskFull(m_lockFolder);
}

void FirebirdClient::SettleLockFiles()
{
    // "fb_lock…" belongs to the client library, "fb12_monitor…" and "fb12_trace" to the engine plug-in.
    const QFileInfoList files = QDir(m_lockFolder).entryInfoList({u"fb*"_s}, QDir::Files | QDir::System);
    for (const QFileInfo &file : files) {
        const int descriptor = ::open(QFile::encodeName(file.filePath()).constData(), O_RDWR | O_CLOEXEC);
        if (descriptor < 0)
            continue;
        struct stat status = {};
        const bool known = ::fstat(descriptor, &status) == 0;
        // Firebird makes them accessible to the owner's group only, which would lock out the next user.
        if (known && m_locksAreShared && status.st_uid == ::geteuid())
            ::fchmod(descriptor, 0666);
        const bool room = !known || Allocate(descriptor, status.st_size);
        ::close(descriptor);
        if (!room)
            ThrowDiskFull(m_lockFolder);
    }
}
