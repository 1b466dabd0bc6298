#include "stores/BackupService.h"

#include "stores/FirebirdClient.h"

#include <QFileInfo>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

using ParameterBlock = std::unique_ptr<Firebird::IXpbBuilder, EngineDisposer<Firebird::IXpbBuilder>>;

ParameterBlock NewBlock(FirebirdClient &client, unsigned kind)
{
    return ParameterBlock(client.Util()->getXpbBuilder(client.Status(), kind, nullptr, 0));
}

/// One task of the engine, from its start to its end.
class ServiceTask
{
public:
    ServiceTask(FirebirdClient &client, unsigned char action)
        : m_client(client), m_start(NewBlock(client, Firebird::IXpbBuilder::SPB_START))
    {
        m_start->insertTag(client.Status(), action);
    }
    void Set(unsigned char tag, const QString &text)
    {
        m_start->insertString(m_client.Status(), tag, text.toUtf8().constData());
    }
    void Set(unsigned char tag, int value) { m_start->insertInt(m_client.Status(), tag, value); }

    /// Throws what the engine raises, and what it only says: a task without complaints says nothing.
    void Run()
    {
        EngineStatus *status = m_client.Status();
        const ParameterBlock login = NewBlock(m_client, Firebird::IXpbBuilder::SPB_ATTACH);
        login->insertString(status, isc_spb_user_name, "SYSDBA");
        login->insertTag(status, isc_spb_utf8_filename);
        Firebird::IService *service = m_client.Provider()->attachServiceManager(
            status, "service_mgr", login->getBufferLength(status), login->getBuffer(status));
        QString said;
        try {
            service->start(status, m_start->getBufferLength(status), m_start->getBuffer(status));
            said = Listen(service);
        } catch (...) {
            service->release();
            throw;
        }
        service->detach(status);
        if (!said.isEmpty())
            throw DatabaseError(said);
    }

private:
    /// Waits for the end of the task; gives what it said.
    QString Listen(Firebird::IService *service)
    {
        EngineStatus *status = m_client.Status();
        const unsigned char wanted[] = {isc_info_svc_line};
        QStringList lines;
        for (;;) {
            unsigned char answer[4096] = {};
            service->query(status, 0, nullptr, sizeof wanted, wanted, sizeof answer, answer);
            // Item, length of two bytes, line. No line at all is the end.
            const int length = answer[1] | answer[2] << 8;
            if (answer[0] != isc_info_svc_line || length == 0)
                return lines.join(u'\n').trimmed();
            lines.append(QString::fromUtf8(reinterpret_cast<const char *>(answer + 3), length));
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

/// Lock files that the task made are every user's, whether it succeeded or not.
void RunAndSettle(FirebirdClient &client, ServiceTask &task)
{
    try {
        task.Run();
    } catch (...) {
        client.SettleLockFiles();
        throw;
    }
    client.SettleLockFiles();
}

} // namespace

void BackupService::Backup(const QString &database, const QString &backup) const
{
    FirebirdClient &client = Ready(m_libraryName, database);
    ServiceTask task(client, isc_action_svc_backup);
    task.Set(isc_spb_dbname, database);
    task.Set(isc_spb_bkp_file, backup);
    // Collecting garbage on the way would write into the file of somebody at work.
    task.Set(isc_spb_options, isc_spb_bkp_no_garbage_collect);
    RunAndSettle(client, task);
}

void BackupService::Restore(const QString &backup, const QString &database) const
{
    if (QFileInfo::exists(database))
        throw DatabaseError(u"The file \"%1\" exists"_s.arg(database));
    FirebirdClient &client = Ready(m_libraryName, database);
    ServiceTask task(client, isc_action_svc_restore);
    task.Set(isc_spb_bkp_file, backup);
    task.Set(isc_spb_dbname, database);
    task.Set(isc_spb_options, isc_spb_res_create);
    RunAndSettle(client, task);
}
