#include "lumivara-data/canon/CanonFile.h"

#include "common/Console.h"
#include "lumivara-data/files/DataFile.h"
#include "stores/data/FIBDataSet.h"

using namespace Qt::StringLiterals;

namespace {

const QStringList &PageColumns()
{
    static const QStringList columns = {u"CONTENT_VIC_PAL"_s, u"CONTENT_VIC_ENG"_s, u"CONTENT_VIC_VIE"_s,
                                        u"CONTENT_VIC_PAL_VIE"_s};
    return columns;
}

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
        groups.append({NumberOrNull(rows, u"ID_VIT"_s), NumberOrNull(rows, u"P_ID_VIT"_s),
                       NameOrNull(rows, u"NAME_VIT_VIE"_s), NameOrNull(rows, u"NAME_VIT_PAL"_s),
                       NameOrNull(rows, u"NAME_VIT_ENG"_s)});
    }
    return groups;
}

QList<CheckedText> ReadTexts(DataFile &file, Console &console)
{
    TpFIBDataSet rows;
    rows.SetDatabase(&file.Database());
    rows.SetTransaction(&file.Transaction());
    rows.SelectSQL() = {u"select N.ID_VIT, N.ID_VIC, N.NUMBER_VIC, N.NAME_VIC_VIE, N.NAME_VIC_PAL, N.NAME_VIC_ENG,"_s,
                        PageColumns().join(u", "_s),
                        u"from KELORA_CONTENT N order by N.NUMBER_VIC, N.ID_VIC, N.ID_VIT"_s};
    QList<CheckedText> texts;
    rows.Open();
    rows.FetchAll();
    for (rows.First(); !rows.Eof(); rows.Next()) {
        CheckedText text{NumberOrNull(rows, u"ID_VIT"_s),
                         NumberOrNull(rows, u"ID_VIC"_s),
                         NumberOrNull(rows, u"NUMBER_VIC"_s),
                         NameOrNull(rows, u"NAME_VIC_VIE"_s),
                         NameOrNull(rows, u"NAME_VIC_PAL"_s),
                         NameOrNull(rows, u"NAME_VIC_ENG"_s),
                         {}};
        for (const QString &column : PageColumns()) {
            if (const QByteArray page = rows.FieldByName(column).AsBytes(); !page.isEmpty())
                text.pages.append({column, InspectPage(page)});
        }
        texts.append(text);
        console.Progress(u"KELORA_CONTENT"_s, texts.size(), rows.RecordCount());
    }
    console.EndProgress();
    return texts;
}

} // namespace

bool IsCanon(DataFile &file)
{
    return file.HasTable(u"KELORA_TREE"_s) && file.HasTable(u"KELORA_CONTENT"_s);
}

CheckedCanon ReadCanon(DataFile &file, Console &console)
{
    return {ReadGroups(file), ReadTexts(file, console)};
}
