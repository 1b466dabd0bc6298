#pragma once

#include "stores/KeloraDM.h"
#include "stores/data/DataSource.h"
#include "stores/data/FIBDataSet.h"
#include "stores/engine/Database.h"

#include <functional>

/// The connection to the reader's marks and to the list of texts that they refer to. Exists for the whole run; the
/// program works without a connection.
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
    /// The marks with the names of their texts. A post gives the row a new key and time. An update or delete fails, and
    /// stores nothing, if another copy has changed or deleted the row since it was read.
    TpFIBDataSet qryFocus;
    TDataSource dsFocus;
    /// Without a statement; each use sets its own.
    TpFIBDataSet qryTemp;

    bool vIsOKClients = false;
    /// Select text of qryFocus as created, lines separated by "\n". Empty without a connection.
    QString vDefFocusSQL;

    /// A mark has been added, edited or deleted by qryFocus, and that is stored. Must not throw.
    std::function<void()> OnMarksChange;

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
