#include "stores/engine/FirebirdClient.h"

#include "stores/engine/LockFolder.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <cstdlib>
#include <dlfcn.h>
#include <ibase.h>
#include <memory>
#include <unistd.h>

using namespace Qt::StringLiterals;

/// In SharedLocksUnix.cpp: keeps Firebird's locks usable after another process was killed inside one.
void KeepSharedLocks();
/// In EngineSearchesUnix.cpp: answers what Firebird asks the system for again and again.
void ShortenEngineSearches();

namespace {

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

/// A folder of this user's own, for databases that can't be written. Empty if there is no place for one.
QString PrivateLockFolder()
{
    QString base = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (base.isEmpty())
        base = QDir::tempPath();
    const QString common = base + u"/lumivara-lock-"_s + QString::number(::getuid());
    if (LockFolder::Make(common, LockFolder::Users::Self))
        return common;
    // Another user has taken the name.
    QByteArray other = QFile::encodeName(common + u"-XXXXXX"_s);
    return ::mkdtemp(other.data()) ? QFile::decodeName(other) : QString();
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
    ShortenEngineSearches();
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
    const bool isChosen = !lockFolder.isEmpty();
    if (!isChosen)
        lockFolder = QFileInfo(databasePath).absolutePath() + u"/lock"_s;
    const bool shared = LockFolder::Make(lockFolder, isChosen ? LockFolder::Users::Chosen : LockFolder::Users::All);
    if (!shared)
        lockFolder = PrivateLockFolder();
    if (lockFolder.isEmpty())
        throw DatabaseError(u"There is no place for the database engine's lock files"_s);
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
        LockFolder::Make(m_lockFolder, m_locksAreShared ? LockFolder::Users::All : LockFolder::Users::Self);
    LockFolder::Guard(m_lockFolder);
    LockFolder::RequireRoom(m_lockFolder);
}

void FirebirdClient::SettleLockFiles()
{
    LockFolder::Settle(m_lockFolder);
}
