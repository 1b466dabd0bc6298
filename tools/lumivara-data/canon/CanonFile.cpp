#include "lumivara-data/canon/CanonFile.h"

#include "base/Messages.h"
#include "common/Console.h"
#include "lumivara-data/files/DataFile.h"
#include "stores/Schema.h"
#include "stores/data/FIBDataSet.h"
#include "stores/engine/DatabaseError.h"

using namespace Qt::StringLiterals;

namespace {

std::optional<int> NumberOrNull(TDataSet &rows, const QString &column)
{
    const TField &field = rows.FieldByName(column);
    return field.IsNull() ? std::nullopt : std::optional<int>(field.AsInteger());
}

/// A null name is a null string, an empty one an empty string.
QString NameOrNull(TDataSet &rows, const QString &column)
{
    const TField &field = rows.FieldByName(column);
    return field.IsNull() ? QString() : field.AsString() + u""_s;
}

QList<CheckedGroup> ReadGroups(DataFile &file)
{
    TpFIBDataSet rows;
    rows.SetDatabase(&file.Database());
    rows.SetTransaction(&file.Transaction());
    rows.SelectSQL() = {u"select T.ID_VIT, T.P_ID_VIT, T.NAME_VIT_VIE, T.NAME_VIT_PAL, T.NAME_VIT_ENG"_s,
                        u"from KELORA_TREE T order by T.ID_VIT"_s};
    QList<CheckedGroup> groups;
    for (rows.Open(); !rows.Eof(); rows.Next()) {
        groups.append({NumberOrNull(rows, Field::IdVit), NumberOrNull(rows, Field::ParentIdVit),
                       NameOrNull(rows, Field::NameVitVie), NameOrNull(rows, Field::NameVitPal),
                       NameOrNull(rows, Field::NameVitEng)});
    }
    return groups;
}

QString PlaceOf(const CheckedText &text)
{
    const auto shown = [](const std::optional<int> &key) { return key ? QString::number(*key) : u"null"_s; };
    return Sentence({u"bài %1 của nhóm %2", u"text %1 of group %2"}).arg(shown(text.idVic), shown(text.idVit));
}

CheckedText TextOf(TDataSet &rows, QList<Finding> &unreadable)
{
    CheckedText text{NumberOrNull(rows, Field::IdVit),
                     NumberOrNull(rows, Field::IdVic),
                     NumberOrNull(rows, Field::NumberVic),
                     NameOrNull(rows, Field::NameVicVie),
                     NameOrNull(rows, Field::NameVicPal),
                     NameOrNull(rows, Field::NameVicEng),
                     {}};
    for (const QString &column : PageColumns()) {
        try {
            if (const QByteArray page = rows.FieldByName(column).AsBytes(); !page.isEmpty())
                text.pages.append({column, InspectPage(page)});
        } catch (const DatabaseError &error) {
            unreadable.append({PlaceOf(text), Sentence({u"không đọc được %1: %2", u"%1 cannot be read: %2"})
                                                  .arg(column, error.Text().simplified())});
        }
    }
    return text;
}

/// Appends the texts, in an order or as they are stored. Throws DatabaseError at a row that can't be read.
void AppendTexts(DataFile &file, const QString &order, Console &console, CheckedCanon &canon)
{
    TpFIBDataSet rows;
    rows.SetDatabase(&file.Database());
    rows.SetTransaction(&file.Transaction());
    rows.SelectSQL() = {u"select N.ID_VIT, N.ID_VIC, N.NUMBER_VIC, N.NAME_VIC_VIE, N.NAME_VIC_PAL, N.NAME_VIC_ENG,"_s,
                        PageColumns().join(u", "_s), u"from KELORA_CONTENT N"_s, order};
    rows.Open();
    if (!order.isEmpty())
        rows.FetchAll();
    for (; !rows.Eof(); rows.Next()) {
        canon.texts.append(TextOf(rows, canon.unreadable));
        console.Progress(Table::KeloraContent, canon.texts.size(), rows.RecordCount());
    }
    console.EndProgress();
}

/// A damaged page or row is a finding, and what can be read is read on.
void ReadTexts(DataFile &file, Console &console, CheckedCanon &canon)
{
    try {
        AppendTexts(file, u"order by N.NUMBER_VIC, N.ID_VIC, N.ID_VIT"_s, console, canon);
        return;
    } catch (const DatabaseError &) {
        // Sorting wants every row; without it the damaged one is the last.
    }
    canon.texts.clear();
    canon.unreadable.clear();
    try {
        AppendTexts(file, {}, console, canon);
    } catch (const DatabaseError &error) {
        if (canon.texts.isEmpty())
            throw;
        canon.unreadable.append({Sentence({u"phần sau %1", u"what follows %1"}).arg(PlaceOf(canon.texts.last())),
                                 Sentence({u"không đọc được: ", u"cannot be read: "}) + error.Text().simplified()});
    }
}

} // namespace

bool IsCanon(DataFile &file)
{
    return file.HasTable(Table::KeloraTree) && file.HasTable(Table::KeloraContent);
}

CheckedCanon ReadCanon(DataFile &file, Console &console)
{
    CheckedCanon canon;
    canon.groups = ReadGroups(file);
    ReadTexts(file, console, canon);
    return canon;
}
