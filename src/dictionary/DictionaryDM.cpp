#include "dictionary/DictionaryDM.h"

#include "stores/Schema.h"
#include "stores/settings/Options.h"

TfrmDictionaryDM::TfrmDictionaryDM(ModuleDoors doors, QObject *owner)
    : QObject(owner), dbDictionary(this), trDictionary(this), m_doors(std::move(doors))
{
    setObjectName(QStringLiteral("frmDictionaryDM"));
    dbDictionary.setObjectName(QStringLiteral("dbDictionary"));
    trDictionary.setObjectName(QStringLiteral("trDictionary"));
    trDictionary.TimeoutAction = TpFIBTransaction::TimeoutActionKind::TARollback;
}

void TfrmDictionaryDM::DataModuleCreate()
{
    vIsOKDictionary = true;
    PrepareConnection(dbDictionary, trDictionary, AppPath + DatabaseFile::Dictionary, m_doors.exeName);
    try {
        Connect(dbDictionary, trDictionary, m_doors);
    } catch (const std::exception &) {
        vIsOKDictionary = false;
    }
}
