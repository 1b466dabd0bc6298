#include "lumivara-data/canon/ClientList.h"

#include "base/Messages.h"
#include "common/Leftover.h"
#include "common/Report.h"
#include "common/Tool.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/marks/MarksCheck.h"
#include "lumivara-data/sealed/Examination.h"
#include "stores/Schema.h"
#include "stores/engine/Statement.h"

#include <QFileInfo>
#include <QHash>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QVariant OrNull(const QString &name)
{
    return name.isEmpty() ? QVariant() : QVariant(name);
}

QString Shown(const ClientList::Names &names)
{
    QStringList all{names[0], names[1], names[2]};
    all.removeAll(QString());
    return all.isEmpty() ? Sentence({u"không có tên", u"no name"}) : all.join(u" · "_s);
}

/// The texts of marks that the canon has under another number alone: what is known of them is in the list.
void AddStrayed(DataFile &file, const QHash<int, qsizetype> &marks, const QList<TextTraits> &traits,
                QHash<int, int> &moved)
{
    QSet<int> known;
    for (const TextTraits &text : traits)
        known.insert(text.key);
    QHash<int, LanguageNames> names;
    for (const QList<QVariant> &row : file.Rows(u"select S.NIC_SUT, S.NAME_SUT_PAL, S.NAME_SUT_VIE, S.NAME_SUT_ENG "
                                                "from SUTTA_LIST S where S.NIK_SUT = %1"_s.arg(Collection::Kelora)))
        names[row[0].toInt()] = {row[1].toString(), row[2].toString(), row[3].toString()};
    QList<TextTraits> strayed;
    for (auto text = marks.keyBegin(); text != marks.keyEnd(); ++text) {
        if (!known.contains(*text) && !moved.contains(*text))
            strayed.append({*text, {}, names.value(*text)});
    }
    const QHash<qsizetype, qsizetype> same = SameTexts(strayed, traits);
    for (auto pair = same.cbegin(); pair != same.cend(); ++pair)
        moved.insert(strayed[pair.key()].key, traits[*pair].key);
}

QList<ClientList::MovedMarks> MoveMarks(DataFile &file, const ClientList::Renewal &renewal)
{
    QHash<int, qsizetype> marks;
    for (const QList<QVariant> &row :
         file.Rows(u"select F.NIC_SUT, count(*) from SUTTA_TEXT_FOCUS F where F.NIK_SUT = %1 and F.NIC_SUT is not null "
                   "group by F.NIC_SUT"_s.arg(Collection::Kelora)))
        marks.insert(row[0].toInt(), row[1].toLongLong());
    QHash<int, int> moved = renewal.moved;
    AddStrayed(file, marks, renewal.traits, moved);
    QHash<int, QString> names;
    for (const KeloraText &text : renewal.texts)
        names.insert(text.number, text.vietnamese.isEmpty() ? text.pali : text.vietnamese);
    QList<ClientList::MovedMarks> done;
    Statement move(file.Database().Attachment(), file.Transaction().Native(),
                   u"update SUTTA_TEXT_FOCUS set NIC_SUT = :TO_KEY where NIK_SUT = :NIK and NIC_SUT = :FROM_KEY"_s);
    for (auto pair = moved.cbegin(); pair != moved.cend(); ++pair) {
        if (!marks.contains(pair.key()))
            continue;
        move.Execute(file.Transaction().Native(), {*pair, Collection::Kelora, pair.key()});
        done.append({pair.key(), *pair, marks[pair.key()], names.value(*pair)});
    }
    std::sort(done.begin(), done.end(),
              [](const ClientList::MovedMarks &a, const ClientList::MovedMarks &b) { return a.to < b.to; });
    return done;
}

void MoveList(DataFile &file, const QHash<int, int> &moved)
{
    QSet<int> listed;
    for (const QList<QVariant> &row :
         file.Rows(u"select S.NIC_SUT from SUTTA_LIST S where S.NIK_SUT = %1"_s.arg(Collection::Kelora)))
        listed.insert(row[0].toInt());
    const auto &native = file.Transaction().Native();
    Statement move(file.Database().Attachment(), native,
                   u"update SUTTA_LIST set NIC_SUT = :TO_KEY where NIK_SUT = :NIK and NIC_SUT = :FROM_KEY"_s);
    Statement remove(file.Database().Attachment(), native,
                     u"delete from SUTTA_LIST where NIK_SUT = :NIK and NIC_SUT = :FROM_KEY"_s);
    for (auto pair = moved.cbegin(); pair != moved.cend(); ++pair) {
        if (!listed.contains(pair.key()))
            continue;
        if (listed.contains(*pair))
            remove.Execute(native, {Collection::Kelora, pair.key()});
        else
            move.Execute(native, {*pair, Collection::Kelora, pair.key()});
    }
}

} // namespace

void ClientList::Prepare(const QString &path, Console &console)
{
    const QFileInfo info(path);
    if (!info.isFile())
        throw ToolError(Sentence({u"%1: không có tệp này", u"%1: there is no such file"}).arg(path));
    if (!info.isWritable())
        throw ToolError(Sentence({u"%1: không ghi được", u"%1: cannot be written"}).arg(path));
    TpFIBDatabase::SetLockFolder(info.absolutePath() + u"/lock"_s);
    DataFile file;
    file.Open(OpenablePath(info.absoluteFilePath(), false, console));
    if (!IsMarks(file))
        throw ToolError(Sentence({u"%1: không phải là tệp ghi chép (các bảng SUTTA_LIST, SUTTA_TEXT_FOCUS)",
                                  u"%1: no file of marks (tables SUTTA_LIST, SUTTA_TEXT_FOCUS)"})
                            .arg(path));
    file.Close();
}

QList<KeloraText> ClientList::TextsOf(const QString &canon, Console &console)
{
    return OnFile(canon, [&] {
        DataFile file;
        file.Open(OpenablePath(canon, true, console));
        if (!file.HasTable(Table::KeloraContent))
            throw ToolError(Sentence({u"%1: không phải là kho kinh sách (các bảng KELORA_TREE, KELORA_CONTENT)",
                                      u"%1: no canon (tables KELORA_TREE, KELORA_CONTENT)"})
                                .arg(canon));
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

QSet<int> ClientList::Numbers(const QString &path)
{
    QSet<int> numbers;
    OnFile(path, [&] {
        DataFile file;
        file.Open(QFileInfo(path).absoluteFilePath());
        for (const QString &select : {u"select S.NIC_SUT from SUTTA_LIST S where S.NIK_SUT = %1"_s,
                                      u"select distinct F.NIC_SUT from SUTTA_TEXT_FOCUS F where F.NIK_SUT = %1"_s}) {
            for (const QList<QVariant> &row : file.Rows(select.arg(Collection::Kelora)))
                numbers.insert(row[0].toInt());
        }
        file.Close();
    });
    return numbers;
}

QList<KeloraText> ClientList::TextsOf(const CheckedCanon &canon)
{
    QList<KeloraText> texts;
    for (const CheckedText &text : canon.texts) {
        if (text.idVic)
            texts.append({*text.idVic, text.nameVietnamese, text.namePali, text.nameEnglish});
    }
    return texts;
}

ClientList::Renewed ClientList::Renew(const QString &path, const Renewal &renewal)
{
    return OnFile(path, [&] {
        DataFile file;
        file.Open(QFileInfo(path).absoluteFilePath());
        Renewed renewed;
        renewed.moved = MoveMarks(file, renewal);
        if (renewal.endsMoved)
            MoveList(file, renewal.moved);
        renewed.changes = Changes(file, renewal.texts);
        if (renewal.keepsNames)
            renewed.changes.removeIf([](const Change &change) { return !change.isNew; });
        Make(file, renewed.changes);
        file.Database().CheckFileInPlace();
        // Whatever closing the file comes to, what is committed is done.
        Leftover::Complete(path, [&file] { file.Transaction().Commit(); });
        return renewed;
    });
}

void ClientList::Tell(const Renewed &renewed, Report &report)
{
    qsizetype added = 0, marks = 0;
    for (const MovedMarks &moved : renewed.moved) {
        report.Note(Sentence({u"bài %1", u"text %1"}).arg(moved.from),
                    Sentence({u"%1 ghi chép của nó nay ở bài %2 (%3)", u"its %1 marks are on text %2 now (%3)"})
                        .arg(moved.marks)
                        .arg(moved.to)
                        .arg(moved.name));
        marks += moved.marks;
    }
    for (const Change &change : renewed.changes) {
        added += change.isNew ? 1 : 0;
        if (!change.isNew)
            report.Note(Sentence({u"bài %1", u"text %1"}).arg(change.number), InWords(change));
    }
    report.Count(Sentence({u"bài thêm vào danh sách", u"texts added to the list"}), added);
    report.Count(Sentence({u"tên được đổi trong danh sách", u"names renewed in the list"}),
                 renewed.changes.size() - added);
    if (marks > 0)
        report.Count(Sentence({u"ghi chép được chuyển", u"marks moved"}), marks);
}

QString ClientList::InWords(const Change &change)
{
    return change.isNew ? Sentence({u"thiếu: %1", u"missing: %1"}).arg(Shown(change.wanted))
                        : Sentence({u"có tên %1, trong kho kinh sách là %2", u"named %1, in the canon %2"})
                              .arg(Shown(change.now), Shown(change.wanted));
}
