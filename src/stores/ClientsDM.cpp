#include "stores/ClientsDM.h"

#include "base/Messages.h"
#include "stores/Schema.h"
#include "stores/settings/Options.h"

#include <array>

using namespace Qt::StringLiterals;

namespace {

/// By collection, from Digha on.
constexpr std::array collectionPrefixes{
    Message{u"(Trường Bộ - ", u"(Digha Tarune - "},       Message{u"(Trung Bộ - ", u"(Majjhima Tarune - "},
    Message{u"(Tăng Chi Bộ - ", u"(Anguttara Tarune - "}, Message{u"(Tương Ưng Bộ - ", u"(Samyutta Tarune - "},
    Message{u"(Tiểu Bộ - ", u"(Khuddaka Tarune - "},      Message{u"(Tạng Luật - ", u"(Kelora - "}};
static_assert(collectionPrefixes.size() == Collection::Kelora);

QString CollectionPrefix(int collection)
{
    if (collection < Collection::Digha || collection > Collection::Kelora)
        return {};
    return TextOrNone(collectionPrefixes[static_cast<size_t>(collection - Collection::Digha)]);
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

    qryFocus.AddField(Field::IdFoc, FieldType::Integer);
    qryFocus.AddField(Field::NameFoc, FieldType::WideString, Length::Name);
    qryFocus.AddField(Field::TextFoc, FieldType::Blob);
    qryFocus.AddField(Field::PriorityFoc, FieldType::Integer);
    qryFocus.AddField(Field::DescFoc, FieldType::WideString, Length::Desc);
    qryFocus.AddField(Field::NikSut, FieldType::Integer);
    qryFocus.AddField(Field::NicSut, FieldType::Integer);
    qryFocus.AddField(Field::NameSutVie, FieldType::WideString, Length::Name).OnGetText = [this](const TField &field) {
        return qryFocusNAME_SUT_VIEGetText(field);
    };
    qryFocus.AddField(Field::NameSutPal, FieldType::WideString, Length::Name);
    qryFocus.AddField(Field::NameSutEng, FieldType::WideString, Length::Name);
    qryFocus.AddField(Field::FavouriteSut, FieldType::SmallInt);
    qryFocus.AddField(Field::DatetimeFoc, FieldType::DateTime);
    qryFocus.AddField(Field::KeywordFoc, FieldType::WideString, Length::Keyword);
    qryFocus.OnNewRecord = [this] { qryFocusNewRecord(); };
    qryFocus.BeforePost = [this] { qryFocusBeforePost(); };
    qryFocus.BeforeDelete = [this] { qryFocusBeforeDelete(); };
    qryFocus.AfterPost = qryFocus.AfterDelete = [this] {
        if (OnMarksChange)
            OnMarksChange();
    };
}

void TfrmClientsDM::DataModuleCreate()
{
    vIsOKClients = true;
    PrepareConnection(dbClientTarune, trClientTarune, AppPath + DatabaseFile::Marks, m_doors.exeName);
    try {
        Connect(dbClientTarune, trClientTarune, m_doors);
    } catch (const std::exception &) {
        vIsOKClients = false;
        return;
    }
    vDefFocusSQL = qryFocus.SelectSQL().join(u'\n');
}

void TfrmClientsDM::qryFocusNewRecord()
{
    qryFocus.FieldByName(Field::PriorityFoc).SetAsInteger(Priority::OfNewMark);
}

void TfrmClientsDM::qryFocusBeforePost()
{
    qryTemp.Close();
    qryTemp.SelectSQL() = QStringList{u"select max(S.ID_FOC) ID_FOC from SUTTA_TEXT_FOCUS S"_s};
    qryTemp.Open();
    const qlonglong last = qryTemp.FieldByName(Field::IdFoc).Value().toLongLong(); // 0 for null
    qryFocus.FieldByName(Field::IdFoc).SetValue(last + 1);
    qryTemp.Close();
    qryTemp.SelectSQL().clear();
    qryFocus.FieldByName(Field::DatetimeFoc).SetAsDateTime(m_doors.now());
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
        name = qryFocus.FieldByName(Field::NameSutEng).AsString();
        if (name.isEmpty())
            name = qryFocus.FieldByName(Field::NameSutPal).AsString();
        break;
    default:
        return {};
    }
    return CollectionPrefix(qryFocus.FieldByName(Field::NikSut).AsInteger()) + name + u')';
}
