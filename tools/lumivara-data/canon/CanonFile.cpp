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

QVariant TextOrNull(const QString &text)
{
    return text.isEmpty() ? QVariant() : QVariant(text);
}

QVariant BytesOrNull(const QByteArray &bytes)
{
    return bytes.isEmpty() ? QVariant() : QVariant(bytes);
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

void WriteCanon(const CanonSource &source, const QString &path, Console &console)
{
    DataFile file;
    file.Create(path);
    file.RunSchema(u"canon"_s);
    {
        RowWriter groups(file, u"KELORA_TREE"_s,
                         {u"ID_VIT"_s, u"P_ID_VIT"_s, u"NAME_VIT_VIE"_s, u"NAME_VIT_PAL"_s, u"NAME_VIT_ENG"_s});
        for (const SourceGroup &group : source.groups) {
            groups.Append({group.idVit, group.parent, TextOrNull(group.nameVietnamese), TextOrNull(group.namePali),
                           TextOrNull(group.nameEnglish)});
        }
    }
    {
        RowWriter texts(file, u"KELORA_CONTENT"_s,
                        QStringList{u"ID_VIT"_s, u"ID_VIC"_s, u"NUMBER_VIC"_s, u"NAME_VIC_VIE"_s, u"NAME_VIC_PAL"_s,
                                    u"NAME_VIC_ENG"_s} +
                            PageColumns());
        qsizetype done = 0;
        for (const SourceText &text : source.texts) {
            const TextPages pages = ComposePages(source, text);
            texts.Append({text.idVit, text.idVic, text.number, TextOrNull(text.nameVietnamese),
                          TextOrNull(text.namePali), TextOrNull(text.nameEnglish), BytesOrNull(pages.pali),
                          BytesOrNull(pages.english), BytesOrNull(pages.vietnamese), BytesOrNull(pages.parallel)});
            console.Progress(u"KELORA.FDB"_s, ++done, source.texts.size());
        }
    }
    console.EndProgress();
    file.Finish(true);
}

bool IsCanon(DataFile &file)
{
    return file.HasTable(u"KELORA_TREE"_s) && file.HasTable(u"KELORA_CONTENT"_s);
}

CheckedCanon ReadCanon(DataFile &file, Console &console)
{
    return {ReadGroups(file), ReadTexts(file, console)};
}
