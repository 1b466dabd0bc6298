#pragma once

#include "stores/KeloraDM.h"
#include "stores/data/DataSource.h"
#include "stores/data/FIBDataSet.h"
#include "stores/engine/Database.h"

/// The connection to what the reader adds: the marked passages and the list of texts that they refer to. Lives for the
/// whole run; the program works without it.
class TfrmClientsDM : public QObject
{
    Q_OBJECT
public:
    explicit TfrmClientsDM(ModuleDoors doors, QObject *owner = nullptr);

    /// Connects to TARUNECLIENT.FDB in AppPath; a failure is silent and leaves vIsOKClients false. Opens no dataset.
    void DataModuleCreate();

    TpFIBDatabase dbClientTarune;
    TpFIBTransaction trClientTarune;
    /// The list of texts of all collections. Nothing opens it.
    TpFIBDataSet qryFavSutta;
    TDataSource dsFavouriteSutta;
    /// The marked passages with the names of their texts. A post gives the row a new key and time; an update or delete
    /// fails, and stores nothing, where another copy has changed or deleted the row since it was read.
    TpFIBDataSet qryFocus;
    TDataSource dsFocus;
    /// Without a statement; each use sets its own.
    TpFIBDataSet qryTemp;

    bool vIsOKClients = false;
    /// Select text of qryFocus as it stands at creation, lines parted by "\n". Empty without a connection.
    QString vDefFocusSQL;

    void qryFocusNewRecord();
    void qryFocusBeforePost();
    void qryFocusBeforeDelete();
    /// The label of a text: its collection and its name in the interface's language.
    QString qryFocusNAME_SUT_VIEGetText(const TField &field);

private:
    void DescribeFavourites();
    void DescribeMarks();

    ModuleDoors m_doors;
};
