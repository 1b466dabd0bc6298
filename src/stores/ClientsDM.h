#pragma once

#include "stores/DataSource.h"
#include "stores/Database.h"
#include "stores/FIBDataSet.h"
#include "stores/KeloraDM.h"

/// The connection to what the reader adds. Lives for the whole run; the program works without it.
class TfrmClientsDM : public QObject
{
    Q_OBJECT
public:
    explicit TfrmClientsDM(ModuleDoors doors, QObject *owner = nullptr);

    /// Connects to TARUNECLIENT.FDB in AppPath; a failure is silent and leaves vIsOKClients false.
    void DataModuleCreate();

    TpFIBDatabase dbClientTarune;
    TpFIBTransaction trClientTarune;
    bool vIsOKClients = false;

private:
    ModuleDoors m_doors;
};
