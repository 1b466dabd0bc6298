#pragma once

#include "stores/KeloraDM.h"
#include "stores/engine/Database.h"

/// The connection to the dictionaries. Exists for the whole run; the program works without a connection.
class TfrmDictionaryDM : public QObject
{
    Q_OBJECT
public:
    explicit TfrmDictionaryDM(ModuleDoors doors, QObject *owner = nullptr);

    /// Connects to PALIDICT.FDB in AppPath; a failure is silent and leaves vIsOKDictionary false.
    void DataModuleCreate();

    TpFIBDatabase dbDictionary;
    TpFIBTransaction trDictionary;
    bool vIsOKDictionary = false;

private:
    ModuleDoors m_doors;
};
