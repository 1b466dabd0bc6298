#include "stores/engine/Database.h"

#include "stores/engine/DatabaseHandles.h"
#include "stores/engine/Refusal.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

using ParameterBlock = std::unique_ptr<Firebird::IXpbBuilder, EngineDisposer<Firebird::IXpbBuilder>>;

ParameterBlock NewBlock(unsigned kind)
{
    FirebirdClient &client = FirebirdClient::Instance();
    return ParameterBlock(client.Util()->getXpbBuilder(client.Status(), kind, nullptr, 0));
}

void InsertText(Firebird::IXpbBuilder *block, unsigned char tag, const QString &text)
{
    block->insertString(FirebirdClient::Instance().Status(), tag, text.toUtf8().constData());
}

/// The connect parameters that DBParams and CharSet ask for.
ParameterBlock ConnectBlock(const TpFIBDatabase &database, const QStringList &lines)
{
    ParameterBlock block = NewBlock(Firebird::IXpbBuilder::DPB);
    EngineStatus *status = FirebirdClient::Instance().Status();
    QString charSet = database.CharSet();
    QString user = u"SYSDBA"_s;
    for (const QString &line : lines) {
        const QString name = line.section(u'=', 0, 0).trimmed().toLower();
        const QString value = line.section(u'=', 1).trimmed();
        if (name == "lc_ctype"_L1 && charSet.isEmpty())
            charSet = value;
        else if (name == "user_name"_L1)
            user = value;
        else if (name == "password"_L1)
            InsertText(block.get(), isc_dpb_password, value);
    }
    InsertText(block.get(), isc_dpb_user_name, user);
    InsertText(block.get(), isc_dpb_lc_ctype, charSet.isEmpty() ? u"UNICODE_FSS"_s : charSet);
    block->insertTag(status, isc_dpb_utf8_filename);
    // A trigger at the connection is a program of whoever made the file.
    block->insertInt(status, isc_dpb_no_db_triggers, 1);
    block->insertInt(status, isc_dpb_no_garbage_collect, 1);
    block->insertInt(status, isc_dpb_sql_dialect, database.SQLDialect());
    if (database.CachePages() > 0)
        block->insertInt(status, isc_dpb_num_buffers, database.CachePages());
    return block;
}

bool IsReadOnly(Firebird::IAttachment *attachment)
{
    const unsigned char items[] = {isc_info_db_read_only};
    unsigned char answer[16] = {};
    attachment->getInfo(FirebirdClient::Instance().Status(), sizeof items, items, sizeof answer, answer);
    // Item, length of two bytes, value.
    return answer[0] == isc_info_db_read_only && answer[3] != 0;
}

std::shared_ptr<TpFIBDatabase::Handle> Adopt(Firebird::IAttachment *attachment, const TpFIBDatabase &database,
                                             const FileIdentity &file, const PathAlias &alias)
{
    auto handle = std::make_shared<TpFIBDatabase::Handle>();
    handle->attachment = attachment;
    handle->alias = alias;
    handle->file = file;
    handle->dialect = database.SQLDialect();
    FirebirdClient &client = FirebirdClient::Instance();
    if (!client.LocksAreShared() && !IsReadOnly(attachment)) {
        throw DatabaseError(u"The lock folder beside the databases cannot be used, and without it only read-only "
                            "databases can be opened: \"%1\""_s.arg(database.DBName()));
    }
    client.SettleLockFiles();
    return handle;
}

/// Restores the signal handlers that Firebird replaces: on a signal it would shut down by itself, but the program,
/// asked to end by the reader or the session, would go on without it. Signals that arrive meanwhile wait.
class SignalKeeper
{
public:
    SignalKeeper()
    {
        sigset_t held;
        ::sigemptyset(&held);
        for (const int signal : taken)
            ::sigaddset(&held, signal);
        ::pthread_sigmask(SIG_BLOCK, &held, &m_mask);
        for (size_t i = 0; i < taken.size(); ++i)
            ::sigaction(taken[i], nullptr, &m_actions[i]);
    }
    ~SignalKeeper()
    {
        for (size_t i = 0; i < taken.size(); ++i)
            ::sigaction(taken[i], &m_actions[i], nullptr);
        ::pthread_sigmask(SIG_SETMASK, &m_mask, nullptr);
    }
    SignalKeeper(const SignalKeeper &) = delete;
    SignalKeeper &operator=(const SignalKeeper &) = delete;

private:
    static constexpr std::array taken{SIGINT, SIGTERM};
    std::array<struct sigaction, taken.size()> m_actions{};
    sigset_t m_mask{};
};

/// Runs an action that attaches. Firebird makes its lock files before it knows whether it can open the database, so
/// they are settled after a failure, too: otherwise no other user could ever start.
template <typename Action>
Firebird::IAttachment *MakeAttachment(Action action)
{
    constexpr int mostTries = 10;
    constexpr std::chrono::milliseconds pause(20);
    const SignalKeeper keeper;
    FirebirdClient &client = FirebirdClient::Instance();
    for (int tries = 1;; ++tries) {
        try {
            return action();
        } catch (const DatabaseError &error) {
            client.SettleLockFiles();
            // Another user's copy, starting right now, has made a lock file and not opened it to others yet.
            if (tries == mostTries || !error.Text().contains(client.LockFolder() + u'/'))
                throw;
        }
        std::this_thread::sleep_for(pause);
    }
}

std::shared_ptr<TpFIBDatabase::Handle> Attach(const TpFIBDatabase &database, ParameterBlock block)
{
    FirebirdClient &client = FirebirdClient::Instance();
    client.PrepareLockFolder();
    EngineStatus *status = client.Status();
    // Determined before the attach, so that a file replaced meanwhile counts as another one, never as the same.
    const FileIdentity file = FileIdentity::Of(database.DBName());
    const PathAlias alias(database.DBName());
    return Adopt(MakeAttachment([&] {
                     return client.Provider()->attachDatabase(status, alias.Path().toUtf8().constData(),
                                                              block->getBufferLength(status), block->getBuffer(status));
                 }),
                 database, file, alias);
}

} // namespace

TpFIBDatabase::Handle::~Handle()
{
    try {
        Detach();
    } catch (const std::exception &) {
        // There is no caller to report to, and only the clean detach is lost.
    }
}

void TpFIBDatabase::Handle::Detach()
{
    if (!attachment)
        return;
    while (!transactions.empty()) {
        TpFIBTransaction::Handle *last = transactions.back();
        try {
            last->Rollback();
        } catch (const DatabaseError &) {
            // Detaching ends the transaction even if the rollback failed.
        }
    }
    Firebird::IAttachment *leaving = std::exchange(attachment, nullptr);
    try {
        leaving->detach(FirebirdClient::Instance().Status());
    } catch (...) {
        leaving->release();
        throw;
    }
}

TpFIBDatabase::TpFIBDatabase(QObject *owner) : QObject(owner) {}

TpFIBDatabase::~TpFIBDatabase()
{
    if (m_handle) {
        try {
            m_handle->Detach();
        } catch (const std::exception &) {
        }
    }
}

TpFIBTransaction *TpFIBDatabase::DefaultTransaction() const
{
    return m_defaultTransaction;
}

void TpFIBDatabase::SetDefaultTransaction(TpFIBTransaction *transaction)
{
    m_defaultTransaction = transaction;
}

bool TpFIBDatabase::Connected() const
{
    return m_handle && m_handle->attachment;
}

void TpFIBDatabase::SetConnected(bool connected)
{
    if (connected == Connected())
        return;
    if (!connected) {
        const auto handle = std::exchange(m_handle, nullptr);
        handle->changes.Before(m_dbName);
        handle->Detach();
        if (handle->changes.AreAll())
            m_stampLeft = FileStamp::Of(m_dbName);
        return;
    }
    m_stampLeft.reset();
    FirebirdClient::Load(m_libraryName, m_dbName);
    m_handle = Attach(*this, ConnectBlock(*this, m_dbParams));
    m_handle->changes.After(m_dbName);
}

void TpFIBDatabase::CreateDatabase(int pageSize, bool forcedWrites)
{
    if (Connected())
        throw DatabaseError(u"The database is already connected"_s);
    if (QFileInfo::exists(m_dbName))
        throw DatabaseError(u"The file \"%1\" exists"_s.arg(m_dbName));
    FirebirdClient &client = FirebirdClient::Load(m_libraryName, m_dbName);
    client.PrepareLockFolder();
    ParameterBlock block = ConnectBlock(*this, m_dbParams);
    EngineStatus *status = client.Status();
    block->insertInt(status, isc_dpb_page_size, pageSize);
    block->insertInt(status, isc_dpb_force_write, forcedWrites ? 1 : 0);
    InsertText(block.get(), isc_dpb_set_db_charset, u"UNICODE_FSS"_s);
    // A link to a file that does not exist yet is no way to make it, so a name with a colon comes afterwards.
    const QFileInfo wanted(m_dbName);
    const bool isNamedLater = wanted.fileName().contains(u':');
    const QString name = isNamedLater
                             ? wanted.absolutePath() + u"/lumivara-%1.part"_s.arg(QCoreApplication::applicationPid())
                             : m_dbName;
    const PathAlias alias(name);
    Firebird::IAttachment *made = MakeAttachment([&] {
        return client.Provider()->createDatabase(status, alias.Path().toUtf8().constData(),
                                                 block->getBufferLength(status), block->getBuffer(status));
    });
    m_handle = Adopt(made, *this, FileIdentity::Of(name), alias);
    if (!isNamedLater)
        return;
    SetConnected(false);
    if (!QFile::rename(name, m_dbName)) {
        QFile::remove(name);
        throw DatabaseError(u"The file \"%1\" cannot be made"_s.arg(m_dbName));
    }
    SetConnected(true);
}

void TpFIBDatabase::SetReadOnlyMode(bool on)
{
    Attachment();
    SetConnected(false);
    // Setting the mode needs the only attachment to the file.
    ParameterBlock block = ConnectBlock(*this, m_dbParams);
    block->insertInt(FirebirdClient::Instance().Status(), isc_dpb_set_db_readonly, on ? 1 : 0);
    m_handle = Attach(*this, std::move(block));
}

const std::shared_ptr<TpFIBDatabase::Handle> &TpFIBDatabase::Attachment() const
{
    if (!Connected())
        throw DatabaseError(u"The database \"%1\" is not connected"_s.arg(m_dbName));
    return m_handle;
}

void TpFIBDatabase::CheckFileInPlace() const
{
    Attachment()->changes.Before(m_dbName);
    const FileIdentity file = FileIdentity::Of(m_dbName);
    if (file == FileIdentity() || file != Attachment()->file)
        throw Refusal(Refusal::Reason::FileAway, m_dbName);
    if (!QFileInfo(m_dbName).isWritable())
        throw Refusal(Refusal::Reason::FileReadOnly, m_dbName);
}

void TpFIBDatabase::SetLockFolder(const QString &folder)
{
    FirebirdClient::SetLockFolder(folder);
}

TpFIBTransaction::Handle::Handle(std::shared_ptr<TpFIBDatabase::Handle> owner, const QStringList &words)
    : database(std::move(owner))
{
    struct Word
    {
        QLatin1StringView name;
        unsigned char tag;
    };
    static constexpr Word known[] = {
        {"write"_L1, isc_tpb_write},
        {"read"_L1, isc_tpb_read},
        {"nowait"_L1, isc_tpb_nowait},
        {"wait"_L1, isc_tpb_wait},
        {"rec_version"_L1, isc_tpb_rec_version},
        {"no_rec_version"_L1, isc_tpb_no_rec_version},
        {"read_committed"_L1, isc_tpb_read_committed},
        {"concurrency"_L1, isc_tpb_concurrency},
        {"consistency"_L1, isc_tpb_consistency},
    };
    EngineStatus *status = FirebirdClient::Instance().Status();
    ParameterBlock block = NewBlock(Firebird::IXpbBuilder::TPB);
    for (QString word : words) {
        word = word.trimmed().toLower();
        if (word.startsWith("isc_tpb_"_L1))
            word = word.mid(8);
        const auto *found =
            std::find_if(std::begin(known), std::end(known), [&](const Word &w) { return w.name == word; });
        if (found == std::end(known))
            throw DatabaseError(u"Unknown transaction parameter \"%1\""_s.arg(word));
        block->insertTag(status, found->tag);
    }
    transaction =
        database->attachment->startTransaction(status, block->getBufferLength(status), block->getBuffer(status));
    database->transactions.push_back(this);
}

TpFIBTransaction::Handle::~Handle()
{
    try {
        Rollback();
    } catch (const std::exception &) {
    }
}

void TpFIBTransaction::Handle::Rollback()
{
    if (!transaction)
        return;
    std::erase(database->transactions, this);
    Firebird::ITransaction *ending = std::exchange(transaction, nullptr);
    try {
        ending->rollback(FirebirdClient::Instance().Status());
    } catch (...) {
        ending->release();
        throw;
    }
}

void TpFIBTransaction::Handle::Commit()
{
    transaction->commit(FirebirdClient::Instance().Status());
    Ended();
}

void TpFIBTransaction::Handle::Ended()
{
    transaction = nullptr;
    std::erase(database->transactions, this);
}

TpFIBTransaction::TpFIBTransaction(QObject *owner)
    : QObject(owner), m_trParams{u"write"_s, u"isc_tpb_nowait"_s, u"read_committed"_s, u"rec_version"_s}
{}

TpFIBTransaction::~TpFIBTransaction() = default;

bool TpFIBTransaction::Active() const
{
    return m_handle && m_handle->transaction;
}

void TpFIBTransaction::SetActive(bool active)
{
    if (active == Active())
        return;
    if (!active) {
        Rollback();
        return;
    }
    if (!m_database)
        throw DatabaseError(u"The transaction has no database"_s);
    m_handle = std::make_shared<Handle>(m_database->Attachment(), m_trParams);
    m_database->Attachment()->changes.After(m_database->DBName()); // Firebird numbers its transactions in the file
}

void TpFIBTransaction::Commit()
{
    Native()->Commit();
    m_handle.reset();
}

void TpFIBTransaction::Rollback()
{
    Native()->Rollback();
    m_handle.reset();
}

void TpFIBTransaction::CommitRetaining()
{
    Native()->transaction->commitRetaining(FirebirdClient::Instance().Status());
    if (m_database)
        m_database->Attachment()->changes.After(m_database->DBName());
}

void TpFIBTransaction::RollbackRetaining()
{
    Native()->transaction->rollbackRetaining(FirebirdClient::Instance().Status());
}

const std::shared_ptr<TpFIBTransaction::Handle> &TpFIBTransaction::Native() const
{
    if (!Active())
        throw DatabaseError(u"The transaction is not active"_s);
    return m_handle;
}
