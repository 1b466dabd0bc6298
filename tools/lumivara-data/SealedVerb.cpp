#include "lumivara-data/Verbs.h"

#include "base/Messages.h"
#include "common/Console.h"
#include "common/Report.h"
#include "lumivara-data/canon/CanonBefore.h"
#include "lumivara-data/canon/CanonCopy.h"
#include "lumivara-data/canon/CanonFile.h"
#include "lumivara-data/canon/CanonRows.h"
#include "lumivara-data/dictionary/DictionaryFile.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/files/StrangeThings.h"
#include "lumivara-data/marks/MarksCheck.h"
#include "lumivara-data/marks/MarksRows.h"
#include "lumivara-data/sealed/Examination.h"
#include "lumivara-data/sealed/Frames.h"
#include "lumivara-data/sealed/Seal.h"
#include "lumivara-data/sealed/SealedStream.h"
#include "stores/KeloraDM.h"
#include "stores/Schema.h"
#include "stores/engine/BackupService.h"
#include "stores/examination/CompiledBodies.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

using namespace Qt::StringLiterals;

// The tasks of a sealed process: see SealedRun, which starts it. Its arguments are the task, the private copy, and the
// language of its sentences.

namespace {

void Tell(const QList<Finding> &findings, Report &report)
{
    for (const Finding &finding : findings)
        report.Find(finding.row, finding.fault);
}

Thing ThingIn(DataFile &file)
{
    if (IsCanon(file))
        return Thing::Canon;
    if (IsDictionary(file))
        return Thing::Dictionary;
    return IsMarks(file) ? Thing::Marks : Thing::None;
}

void ProveCanon(DataFile &file, Console &console, Report &report, SealedStream &stream)
{
    const CheckedCanon canon = ReadCanon(file, console);
    const QList<Finding> findings = CheckCanon(canon);
    Tell(findings, report);
    Tell(canon.unreadable, report);
    const bool isSound = canon.unreadable.isEmpty() && MayStay(findings);
    report.Count(u"groups"_s, canon.groups.size());
    report.Count(u"texts"_s, canon.texts.size());
    stream.Value(u"repairs"_s, QString::number(PossibleRepairs(canon)));
    if (isSound)
        stream.Value(u"sound"_s, {});
}

void ProveDictionary(DataFile &file, Console &console, Report &report)
{
    const DictionaryReport found = CheckDictionary(file, console);
    Tell(found.findings, report);
    report.Count(u"words"_s, found.wordCount);
    if (found.formCount > 0)
        report.Count(u"forms"_s, found.formCount);
    report.AddUntold(found.faultCount - found.findings.size());
}

void ProveMarks(DataFile &file, Report &report)
{
    const MarksReport found = CheckMarks(file);
    Tell(found.columnFaults, report);
    Tell(found.findings, report);
    for (const Finding &remark : found.remarks)
        report.Note(remark.row, remark.fault);
    report.Count(u"texts"_s, found.textCount);
    report.Count(u"marks"_s, found.markCount);
}

void Check(DataFile &file, Console &console, SealedStream &stream)
{
    Report report;
    const Thing found = ThingIn(file);
    stream.Value(u"kind"_s, NameOf(found));
    if (found == Thing::Canon)
        ProveCanon(file, console, report, stream);
    else if (found == Thing::Dictionary)
        ProveDictionary(file, console, report);
    else if (found == Thing::Marks)
        ProveMarks(file, report);
    stream.Send(report);
}

void Examine(DataFile &file, SealedStream &stream)
{
    const Abilities abilities = AbilitiesOf(file.Database(), file.Transaction());
    const std::pair<const QStringList &, QLatin1StringView> found[] = {{abilities.dynamic, Ability::Dynamic},
                                                                       {abilities.foreignCode, Ability::ForeignCode},
                                                                       {abilities.outside, Ability::Outside},
                                                                       {abilities.atConnection, Ability::AtConnection}};
    for (const auto &[things, key] : found) {
        for (const QString &thing : things)
            stream.Value(key, thing);
    }
}

/// Ends a reading that has lasted long enough.
class LongEnough : public std::exception
{};

/// Reads what the program will read, so that damage that breaks Firebird down does so here. A failure that it tells by
/// itself is the program's to show, when it comes to that place. A view may have no end.
void TryToRead(DataFile &file, Console &console)
{
    constexpr qint64 longestMilliseconds = 1000;
    QElapsedTimer since;
    since.start();
    console.SetProgressTaker([&since](const QString &, qsizetype, qsizetype, const QString &) {
        if (since.elapsed() > longestMilliseconds)
            throw LongEnough();
    });
    try {
        if (IsCanon(file)) {
            ReadCanon(file, console);
        } else if (IsMarks(file)) {
            EachMarksRow(file, [&console](const QString &table, const QList<QVariant> &, qsizetype done) {
                console.Progress(table, done, done);
            });
        }
    } catch (const DatabaseError &) {
    } catch (const LongEnough &) {
    }
    console.SetProgressTaker({});
}

/// What has no place in the new file.
void SendStrange(const QStringList &things, SealedStream &stream)
{
    for (const QString &thing : things)
        stream.Value(u"strange"_s, thing);
}

/// Rows with the values of GroupColumns(), TextColumns() and SourceColumns().
void SendCanon(DataFile &file, Console &console, SealedStream &stream)
{
    SendStrange(StrangeThings(file, {{Table::KeloraTree, GroupColumns()},
                                     {Table::KeloraContent, TextColumns()},
                                     {Table::KeloraSource, SourceColumns()}}),
                stream);
    // Before the texts, so that each is known when it comes.
    for (const auto &[key, source] : KnownSources(file))
        stream.Row(Table::KeloraSource, {key, source});
    Report report;
    CanonRows rows(file);
    for (const CanonGroup &group : rows.Groups(report))
        stream.Row(Table::KeloraTree,
                   {group.idVit, group.parent, group.nameVietnamese, group.namePali, group.nameEnglish});
    const qsizetype total = rows.TextCount();
    qsizetype done = 0;
    for (CanonText text; rows.Next(text, report);) {
        QList<QVariant> values{text.idVit,          text.idVic,    text.number ? QVariant(*text.number) : QVariant(),
                               text.nameVietnamese, text.namePali, text.nameEnglish};
        for (const QByteArray &page : text.pages)
            values.append(page);
        stream.Row(Table::KeloraContent, values);
        console.Progress(Table::KeloraContent, ++done, total);
    }
    stream.Send(report);
}

void SendMarks(DataFile &file, Console &console, SealedStream &stream)
{
    if (!IsMarks(file))
        throw ToolError(u"it holds no marks, or not all of them"_s);
    SendStrange(StrangeInMarks(file), stream);
    EachMarksRow(file, [&](const QString &table, const QList<QVariant> &row, qsizetype done) {
        stream.Row(table, row);
        console.Progress(table, done, done);
    });
    Report report;
    const MarksReport found = CheckMarks(file);
    Tell(found.columnFaults, report);
    for (const QList<Finding> &remarks : {found.findings, found.remarks}) {
        for (const Finding &remark : remarks)
            report.Note(remark.row, remark.fault);
    }
    report.Count(u"texts"_s, found.textCount);
    report.Count(u"marks"_s, found.markCount);
    stream.Send(report);
}

} // namespace

int RunSealed(const QStringList &arguments, Console &console)
{
    const QString task = arguments.value(0), copy = arguments.value(1);
    const QString folder = QFileInfo(copy).absolutePath();
    SpeechOfTools::isVietnamese = arguments.value(2) == "vi"_L1;
    TpFIBDatabase::SetLockFolder(folder + u"/lock"_s);
    SealedStream stream;
    console.SetProgressTaker([&stream](const QString &work, qsizetype done, qsizetype total, const QString &unit) {
        stream.Progress(work, done, total, unit);
    });
    SealProcess(folder);
    try {
        DataFile file;
        if (task == "restore"_L1) {
            const QString made = folder + u"/restored"_s;
            BackupService(ClientLibraryPath(QCoreApplication::applicationDirPath() + u'/')).Restore(copy, made, [&] {
                stream.Progress({}, 0, 0, {});
            });
            file.Open(made);
            SendMarks(file, console, stream);
        } else {
            file.Open(copy);
            if (task == "check"_L1)
                Check(file, console, stream);
            if (task == "examine"_L1)
                TryToRead(file, console);
            if (task == "check"_L1 || task == "examine"_L1)
                Examine(file, stream);
            else if (task == "canon"_L1)
                SendCanon(file, console, stream);
            else if (task == "traits"_L1)
                SendTraits(file, stream);
        }
        file.Close();
        stream.Done();
    } catch (const std::exception &error) {
        stream.Failure(QString::fromUtf8(error.what()));
    }
    return ExitCode::Clean;
}
