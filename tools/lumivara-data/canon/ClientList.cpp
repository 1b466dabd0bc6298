#include "lumivara-data/canon/ClientList.h"

#include "common/Leftover.h"
#include "common/Tool.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/marks/MarksCheck.h"
#include "lumivara-data/sealed/Examination.h"
#include "stores/Schema.h"
#include "stores/engine/Statement.h"

#include <QFileInfo>
#include <QHash>
#include <QSet>

using namespace Qt::StringLiterals;

namespace {

QVariant OrNull(const QString &name)
{
    return name.isEmpty() ? QVariant() : QVariant(name);
}

} // namespace

void ClientList::Prepare(const QString &path, Console &console)
{
    const QFileInfo info(path);
    if (!info.isFile())
        throw ToolError(u"%1: there is no such file"_s.arg(path));
    if (!info.isWritable())
        throw ToolError(u"%1: cannot be written"_s.arg(path));
    TpFIBDatabase::SetLockFolder(info.absolutePath() + u"/lock"_s);
    DataFile file;
    file.Open(OpenablePath(info.absoluteFilePath(), false, console));
    if (!IsMarks(file))
        throw ToolError(u"%1: no file of marks (tables SUTTA_LIST, SUTTA_TEXT_FOCUS)"_s.arg(path));
    file.Close();
}

QList<KeloraText> ClientList::TextsOf(const QString &canon, Console &console)
{
    return OnFile(canon, [&] {
        DataFile file;
        file.Open(OpenablePath(canon, true, console));
        if (!file.HasTable(Table::KeloraContent))
            throw ToolError(u"%1: no canon (tables KELORA_TREE, KELORA_CONTENT)"_s.arg(canon));
        return KeloraTexts(file.Database(), file.Transaction());
    });
}

QList<ClientList::Change> ClientList::Changes(DataFile &marks, const QList<KeloraText> &texts)
{
    QHash<int, Names> listed;
    for (const QList<QVariant> &row :
         marks.Rows(u"select S.NIC_SUT, S.NAME_SUT_VIE, S.NAME_SUT_PAL, S.NAME_SUT_ENG from SUTTA_LIST S "
                    "where S.NIK_SUT = %1"_s.arg(Collection::Kelora)))
        listed[row[0].toInt()] = {row[1].toString(), row[2].toString(), row[3].toString()};
    QList<Change> changes;
    QSet<int> met;
    for (const KeloraText &text : texts) {
        if (met.contains(text.number))
            continue;
        met.insert(text.number);
        const auto found = listed.constFind(text.number);
        Change change{text.number, found == listed.constEnd(), {}, {text.vietnamese, text.pali, text.english}};
        if (!change.isNew) {
            change.now = *found;
            if (change.now[2].isEmpty())
                change.wanted[2] = change.now[2];
        }
        if (change.isNew || change.now != change.wanted)
            changes.append(change);
    }
    return changes;
}

void ClientList::Make(DataFile &marks, const QList<Change> &changes)
{
    RowWriter added(marks, Table::SuttaList, ListColumns());
    Statement renewed(marks.Database().Attachment(), marks.Transaction().Native(),
                      u"update SUTTA_LIST set NAME_SUT_VIE = :VIE, NAME_SUT_PAL = :PAL, NAME_SUT_ENG = :ENG "
                      "where NIK_SUT = :NIK and NIC_SUT = :NIC"_s);
    for (const auto &[number, isNew, now, wanted] : changes) {
        const QList<QVariant> names{OrNull(wanted[0]), OrNull(wanted[1]), OrNull(wanted[2])};
        const QList<QVariant> key{Collection::Kelora, number};
        if (isNew)
            added.Append(key + names);
        else
            renewed.Execute(marks.Transaction().Native(), names + key);
    }
}

void ClientList::Finish(DataFile &marks, const QString &path)
{
    marks.Database().CheckFileInPlace();
    Leftover::Complete(path, [&marks] { marks.Finish(false); });
}

qsizetype ClientList::AddMissing(const QString &path, const CheckedCanon &canon)
{
    DataFile file;
    file.Open(QFileInfo(path).absoluteFilePath());
    QList<KeloraText> texts;
    for (const CheckedText &text : canon.texts) {
        if (text.idVic)
            texts.append({*text.idVic, text.nameVietnamese, text.namePali, text.nameEnglish});
    }
    QList<Change> missing = Changes(file, texts);
    missing.removeIf([](const Change &change) { return !change.isNew; });
    Make(file, missing);
    Finish(file, path);
    return missing.size();
}
