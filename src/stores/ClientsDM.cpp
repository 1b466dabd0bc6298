#include "stores/ClientsDM.h"

#include "base/InterfaceLanguage.h"
#include "stores/settings/Options.h"

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int TextSize = 127;
constexpr int NoteSize = 2047;
constexpr int NewMarkPriority = 2;

QString CollectionPrefix(int collection, int interfaceLang)
{
    static constexpr std::array vietnamese{u"(Trường Bộ - ",    u"(Trung Bộ - ", u"(Tăng Chi Bộ - ",
                                           u"(Tương Ưng Bộ - ", u"(Tiểu Bộ - ",  u"(Tạng Luật - "};
    static constexpr std::array english{u"(Digha Tarune - ",    u"(Majjhima Tarune - ", u"(Anguttara Tarune - ",
                                        u"(Samyutta Tarune - ", u"(Khuddaka Tarune - ", u"(Kelora - "};
    if (collection < 1 || collection > static_cast<int>(vietnamese.size()))
        return {};
    const auto index = static_cast<size_t>(collection - 1);
    switch (interfaceLang) {
    case 0:
        return QString::fromUtf16(vietnamese[index]);
    case 1:
        return QString::fromUtf16(english[index]);
    default:
        return {};
    }
}

} // namespace

TfrmClientsDM::TfrmClientsDM(ModuleDoors doors, QObject *owner)
    : QObject(owner), dbClientTarune(this), trClientTarune(this), qryFavSutta(this), dsFavouriteSutta(this),
      qryFocus(this), dsFocus(this), qryTemp(this), m_doors(std::move(doors))
{
    setObjectName(u"frmClientsDM"_s);
    dbClientTarune.setObjectName(u"dbClientTarune"_s);
    trClientTarune.setObjectName(u"trClientTarune"_s);
    qryFavSutta.setObjectName(u"qryFavSutta"_s);
    dsFavouriteSutta.setObjectName(u"dsFavouriteSutta"_s);
    qryFocus.setObjectName(u"qryFocus"_s);
    dsFocus.setObjectName(u"dsFocus"_s);
    qryTemp.setObjectName(u"qryTemp"_s);
    for (TpFIBDataSet *dataSet : {&qryFavSutta, &qryFocus, &qryTemp}) {
        dataSet->SetDatabase(&dbClientTarune);
        dataSet->SetTransaction(&trClientTarune);
        dataSet->SetAutoCommit(true);
    }
    DescribeFavourites();
    DescribeMarks();
    dsFavouriteSutta.SetDataSet(&qryFavSutta);
    dsFocus.SetDataSet(&qryFocus);
}

void TfrmClientsDM::DescribeFavourites()
{
    qryFavSutta.SelectSQL() =
        QStringList{u"select S.NIK_SUT, S.NIC_SUT, S.NAME_SUT_VIE, S.NAME_SUT_PAL, S.NAME_SUT_ENG, S.FAVOURITE_SUT"_s,
                    u"from"_s, u"    SUTTA_LIST S"_s};
    qryFavSutta.RefreshSQL() =
        qryFavSutta.SelectSQL() +
        QStringList{u" WHERE "_s, u"        S.NIK_SUT = :OLD_NIK_SUT"_s, u"    and S.NIC_SUT = :OLD_NIC_SUT"_s};
    qryFavSutta.InsertSQL() =
        QStringList{u"INSERT INTO SUTTA_LIST("_s,
                    u"    NIK_SUT, NIC_SUT, NAME_SUT_VIE, NAME_SUT_PAL, NAME_SUT_ENG, FAVOURITE_SUT"_s,
                    u")"_s,
                    u"VALUES("_s,
                    u"    :NIK_SUT, :NIC_SUT, :NAME_SUT_VIE, :NAME_SUT_PAL, :NAME_SUT_ENG, :FAVOURITE_SUT"_s,
                    u")"_s};
    qryFavSutta.UpdateSQL() = QStringList{u"UPDATE SUTTA_LIST"_s,
                                          u"SET"_s,
                                          u"    NIK_SUT = :NIK_SUT,"_s,
                                          u"    NIC_SUT = :NIC_SUT,"_s,
                                          u"    NAME_SUT_VIE = :NAME_SUT_VIE,"_s,
                                          u"    NAME_SUT_PAL = :NAME_SUT_PAL,"_s,
                                          u"    NAME_SUT_ENG = :NAME_SUT_ENG,"_s,
                                          u"    FAVOURITE_SUT = :FAVOURITE_SUT"_s,
                                          u"WHERE"_s,
                                          u"    NIK_SUT = :OLD_NIK_SUT"_s,
                                          u"    and NIC_SUT = :OLD_NIC_SUT"_s};
    qryFavSutta.DeleteSQL() = QStringList{u"DELETE FROM"_s, u"    SUTTA_LIST"_s, u"WHERE"_s,
                                          u"        NIK_SUT = :OLD_NIK_SUT"_s, u"    and NIC_SUT = :OLD_NIC_SUT"_s};
}

void TfrmClientsDM::DescribeMarks()
{
    qryFocus.SelectSQL() = QStringList{
        u"select F.ID_FOC, F.NAME_FOC, F.TEXT_FOC, F.PRIORITY_FOC, F.DESC_FOC, F.NIK_SUT, F.NIC_SUT, S.NAME_SUT_VIE,"_s,
        u"       S.NAME_SUT_PAL, S.NAME_SUT_ENG, S.FAVOURITE_SUT, F.DATETIME_FOC, F.KEYWORD_FOC"_s,
        u"from SUTTA_TEXT_FOCUS F"_s,
        u"inner join SUTTA_LIST S on (S.NIK_SUT = F.NIK_SUT and S.NIC_SUT = F.NIC_SUT)  "_s};
    qryFocus.RefreshSQL() = qryFocus.SelectSQL() + QStringList{u" WHERE "_s, u"        F.ID_FOC = :OLD_ID_FOC"_s};
    qryFocus.InsertSQL() = QStringList{
        u"INSERT INTO SUTTA_TEXT_FOCUS("_s,
        u"    ID_FOC, NAME_FOC, TEXT_FOC, PRIORITY_FOC, DESC_FOC, NIK_SUT, NIC_SUT, DATETIME_FOC, KEYWORD_FOC"_s,
        u")"_s,
        u"VALUES("_s,
        u"    :ID_FOC, :NAME_FOC, :TEXT_FOC, :PRIORITY_FOC, :DESC_FOC, :NIK_SUT, :NIC_SUT, :DATETIME_FOC,"_s,
        u"    :KEYWORD_FOC"_s,
        u")"_s};
    qryFocus.UpdateSQL() = QStringList{u"UPDATE SUTTA_TEXT_FOCUS"_s,        u"SET"_s,
                                       u"    ID_FOC = :ID_FOC,"_s,          u"    NAME_FOC = :NAME_FOC,"_s,
                                       u"    TEXT_FOC = :TEXT_FOC,"_s,      u"    PRIORITY_FOC = :PRIORITY_FOC,"_s,
                                       u"    DESC_FOC = :DESC_FOC,"_s,      u"    NIK_SUT = :NIK_SUT,"_s,
                                       u"    NIC_SUT = :NIC_SUT,"_s,        u"    DATETIME_FOC = :DATETIME_FOC,"_s,
                                       u"    KEYWORD_FOC = :KEYWORD_FOC"_s, u"WHERE"_s,
                                       u"    ID_FOC = :OLD_ID_FOC"_s};
    qryFocus.DeleteSQL() =
        QStringList{u"DELETE FROM"_s, u"    SUTTA_TEXT_FOCUS"_s, u"WHERE"_s, u"        ID_FOC = :OLD_ID_FOC"_s};
    // Keys are reused: by now the row's key may belong to another copy's mark.
    qryFocus.LockSQL() =
        QStringList{u"select F.DATETIME_FOC from SUTTA_TEXT_FOCUS F where F.ID_FOC = :OLD_ID_FOC with lock"_s};

    qryFocus.AddField(u"ID_FOC"_s, FieldType::Integer);
    qryFocus.AddField(u"NAME_FOC"_s, FieldType::WideString, TextSize);
    qryFocus.AddField(u"TEXT_FOC"_s, FieldType::Blob);
    qryFocus.AddField(u"PRIORITY_FOC"_s, FieldType::Integer);
    qryFocus.AddField(u"DESC_FOC"_s, FieldType::WideString, NoteSize);
    qryFocus.AddField(u"NIK_SUT"_s, FieldType::Integer);
    qryFocus.AddField(u"NIC_SUT"_s, FieldType::Integer);
    qryFocus.AddField(u"NAME_SUT_VIE"_s, FieldType::WideString, TextSize).OnGetText = [this](const TField &field) {
        return qryFocusNAME_SUT_VIEGetText(field);
    };
    qryFocus.AddField(u"NAME_SUT_PAL"_s, FieldType::WideString, TextSize);
    qryFocus.AddField(u"NAME_SUT_ENG"_s, FieldType::WideString, TextSize);
    qryFocus.AddField(u"FAVOURITE_SUT"_s, FieldType::SmallInt);
    qryFocus.AddField(u"DATETIME_FOC"_s, FieldType::DateTime);
    qryFocus.AddField(u"KEYWORD_FOC"_s, FieldType::WideString, TextSize);
    qryFocus.OnNewRecord = [this] { qryFocusNewRecord(); };
    qryFocus.BeforePost = [this] { qryFocusBeforePost(); };
    qryFocus.BeforeDelete = [this] { qryFocusBeforeDelete(); };
}

void TfrmClientsDM::DataModuleCreate()
{
    vIsOKClients = true;
    PrepareConnection(dbClientTarune, trClientTarune, AppPath + u"TARUNECLIENT.FDB"_s, m_doors.exeName);
    try {
        dbClientTarune.SetConnected(true);
        trClientTarune.SetActive(true);
    } catch (const std::exception &) {
        vIsOKClients = false;
        return;
    }
    vDefFocusSQL = qryFocus.SelectSQL().join(u'\n');
}

void TfrmClientsDM::qryFocusNewRecord()
{
    qryFocus.FieldByName(u"PRIORITY_FOC"_s).SetAsInteger(NewMarkPriority);
}

void TfrmClientsDM::qryFocusBeforePost()
{
    qryTemp.Close();
    qryTemp.SelectSQL() = QStringList{u"select max(S.ID_FOC) ID_FOC from SUTTA_TEXT_FOCUS S"_s};
    qryTemp.Open();
    const qlonglong last = qryTemp.FieldByName(u"ID_FOC"_s).Value().toLongLong(); // 0 for null
    qryFocus.FieldByName(u"ID_FOC"_s).SetValue(last + 1);
    qryTemp.Close();
    qryTemp.SelectSQL().clear();
    qryFocus.FieldByName(u"DATETIME_FOC"_s).SetAsDateTime(m_doors.now());
}

void TfrmClientsDM::qryFocusBeforeDelete()
{
    if (m_doors.confirmDelete)
        m_doors.confirmDelete();
}

QString TfrmClientsDM::qryFocusNAME_SUT_VIEGetText(const TField &field)
{
    QString name;
    switch (InterfaceLang) {
    case 0:
        name = field.AsString();
        break;
    case 1:
        name = qryFocus.FieldByName(u"NAME_SUT_ENG"_s).AsString();
        if (name.isEmpty())
            name = qryFocus.FieldByName(u"NAME_SUT_PAL"_s).AsString();
        break;
    default:
        return {};
    }
    return CollectionPrefix(qryFocus.FieldByName(u"NIK_SUT"_s).AsInteger(), InterfaceLang) + name + u')';
}
