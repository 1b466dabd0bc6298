#include "stores/ClientsDM.h"

TfrmClientsDM::TfrmClientsDM(ModuleDoors doors, QObject *owner)
    : QObject(owner), dbClientTarune(this), trClientTarune(this), m_doors(std::move(doors))
{
    setObjectName(QStringLiteral("frmClientsDM"));
    dbClientTarune.setObjectName(QStringLiteral("dbClientTarune"));
    trClientTarune.setObjectName(QStringLiteral("trClientTarune"));
}

void TfrmClientsDM::DataModuleCreate()
{
    vIsOKClients = true;
    PrepareConnection(dbClientTarune, trClientTarune, AppPath + QStringLiteral("TARUNECLIENT.FDB"), m_doors.exeName);
    try {
        dbClientTarune.SetConnected(true);
        trClientTarune.SetActive(true);
    } catch (const std::exception &) {
        vIsOKClients = false;
    }
}
