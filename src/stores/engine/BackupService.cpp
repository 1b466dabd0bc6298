#include "stores/engine/BackupService.h"

#include "stores/engine/FirebirdClient.h"
#include "stores/engine/PathAlias.h"
#include "stores/engine/SilentStreams.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <memory>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

using ParameterBlock = std::unique_ptr<Firebird::IXpbBuilder, EngineDisposer<Firebird::IXpbBuilder>>;

ParameterBlock NewBlock(FirebirdClient &client, unsigned kind)
{
    return ParameterBlock(client.Util()->getXpbBuilder(client.Status(), kind, nullptr, 0));
}

/// Threads of this process, by number.
QStringList Threads()
{
    return QDir(u"/proc/self/task"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
}

/// The thread that Firebird has just started for a task. It goes on after reporting a failure, and Firebird must not be
/// shut down before it ends. If the system does not list threads, there is nothing to wait for.
class TaskThread
{
public:
    TaskThread() : m_before(Threads()) {}
    /// Call right after the start, before the task's thread starts others, which stay.
    void Started()
    {
        for (const QString &thread : Threads()) {
            if (!m_before.contains(thread))
                m_numbers.append(thread.toInt());
        }
    }
    void Wait() const
    {
        constexpr int mostTries = 400;
        if (m_numbers.isEmpty())
            return;
        const int first = *std::min_element(m_numbers.cbegin(), m_numbers.cend());
        for (int tries = 0; QFileInfo::exists(u"/proc/self/task/%1"_s.arg(first)) && tries < mostTries; ++tries)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }

private:
    QStringList m_before;
    QList<int> m_numbers;
};

/// One Firebird service task, from its start to its end.
class ServiceTask
{
public:
    ServiceTask(FirebirdClient &client, unsigned char action)
        : m_client(client), m_start(NewBlock(client, Firebird::IXpbBuilder::SPB_START))
    {
        m_start->insertTag(client.Status(), action);
        m_start->insertTag(client.Status(), isc_spb_verbose);
    }
    void Set(unsigned char tag, const QString &text)
    {
        m_start->insertString(m_client.Status(), tag, text.toUtf8().constData());
    }
    void Set(unsigned char tag, int value) { m_start->insertInt(m_client.Status(), tag, value); }

    /// Runs the task and returns its output, line by line. Throws Firebird's errors.
    QStringList Run(const std::function<void()> &onLine)
    {
        EngineStatus *status = m_client.Status();
        const ParameterBlock login = NewBlock(m_client, Firebird::IXpbBuilder::SPB_ATTACH);
        login->insertString(status, isc_spb_user_name, "SYSDBA");
        login->insertTag(status, isc_spb_utf8_filename);
        Firebird::IService *service = m_client.Provider()->attachServiceManager(
            status, "service_mgr", login->getBufferLength(status), login->getBuffer(status));
        QStringList said;
        TaskThread thread;
        try {
            service->start(status, m_start->getBufferLength(status), m_start->getBuffer(status));
            thread.Started();
            said = Listen(service, onLine);
        } catch (...) {
            Leave(service, thread);
            throw;
        }
        Leave(service, thread);
        return said;
    }

private:
    static void Leave(Firebird::IService *service, const TaskThread &thread)
    {
        try {
            service->detach(FirebirdClient::Instance().Status());
        } catch (const std::exception &) {
            service->release(); // an earlier failure is the one to report
        }
        thread.Wait();
    }
    /// Waits for the end of the task and returns its output.
    static QStringList Listen(Firebird::IService *service, const std::function<void()> &onLine)
    {
        EngineStatus *status = FirebirdClient::Instance().Status();
        const unsigned char wanted[] = {isc_info_svc_line};
        QStringList lines;
        for (;;) {
            unsigned char answer[4096] = {};
            service->query(status, 0, nullptr, sizeof wanted, wanted, sizeof answer, answer);
            // Item, length of two bytes, line. No line at all is the end.
            const int length = answer[1] | answer[2] << 8;
            if (answer[0] != isc_info_svc_line || length == 0)
                return lines;
            lines.append(QString::fromUtf8(reinterpret_cast<const char *>(answer + 3), length));
            if (onLine)
                onLine();
        }
    }

    FirebirdClient &m_client;
    ParameterBlock m_start;
};

FirebirdClient &Ready(const QString &libraryName, const QString &database)
{
    FirebirdClient &client = FirebirdClient::Load(libraryName, database);
    client.PrepareLockFolder();
    return client;
}

/// Runs a task and requires its last output line: with a truncated file or a full disk it may end without an error.
/// In any case opens the lock files that it made to every user.
void RunToItsEnd(FirebirdClient &client, ServiceTask &task, QLatin1StringView lastWords,
                 const std::function<void()> &onLine = {})
{
    QStringList said;
    try {
        const SilentStreams silent;
        said = task.Run(onLine);
    } catch (...) {
        client.SettleLockFiles();
        throw;
    }
    client.SettleLockFiles();
    if (said.filter(lastWords).isEmpty())
        throw DatabaseError(u"The backup ends early, after: %1"_s.arg(said.value(said.size() - 1).trimmed()));
}

} // namespace

void BackupService::Backup(const QString &database, const QString &backup) const
{
    FirebirdClient &client = Ready(m_libraryName, database);
    // It attaches as everyone does, and the service would not refuse by itself.
    if (!client.LocksAreShared()) {
        throw DatabaseError(u"The lock folder beside the databases cannot be used, and without it \"%1\" cannot be "
                            "backed up"_s.arg(database));
    }
    ServiceTask task(client, isc_action_svc_backup);
    const PathAlias from(database);
    task.Set(isc_spb_dbname, from.Path());
    task.Set(isc_spb_bkp_file, backup);
    // Garbage collection would write to a file that another process is using.
    task.Set(isc_spb_options, isc_spb_bkp_no_garbage_collect | isc_spb_bkp_no_triggers);
    RunToItsEnd(client, task, "closing file, committing, and finishing"_L1);
}

void BackupService::Restore(const QString &backup, const QString &database, const std::function<void()> &onLine) const
{
    if (QFileInfo::exists(database))
        throw DatabaseError(u"The file \"%1\" exists"_s.arg(database));
    FirebirdClient &client = Ready(m_libraryName, database);
    ServiceTask task(client, isc_action_svc_restore);
    task.Set(isc_spb_bkp_file, backup);
    const PathAlias to(database);
    task.Set(isc_spb_dbname, to.Path());
    // A backup may name other files for the engine to make.
    task.Set(isc_spb_options, isc_spb_res_create | isc_spb_res_no_shadow);
    RunToItsEnd(client, task, "finishing, closing, and going home"_L1, onLine);
}
