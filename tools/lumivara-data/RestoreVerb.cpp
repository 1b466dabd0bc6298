#include "lumivara-data/Verbs.h"

#include "common/Report.h"
#include "lumivara-data/files/BackupChecksum.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/files/UnfinishedFile.h"
#include "lumivara-data/marks/MarksRows.h"
#include "lumivara-data/sealed/SealedRun.h"

#include <QCommandLineParser>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

/// True if the bytes are surely those that were backed up. Throws ToolError if they surely are not.
bool AreTheBytesRight(const SealedRun &run, const QString &backup)
{
    const BackupChecksum::State state = BackupChecksum::TakeOff(run.CopyPath());
    if (state == BackupChecksum::State::Wrong)
        throw ToolError(u"%1: is damaged, its checksum is another one"_s.arg(backup));
    return state == BackupChecksum::State::Right;
}

/// Writes the rows of the backup into a new file. Returns what it holds beside them.
QStringList WriteRows(SealedRun &run, const QString &path, Report &report)
{
    DataFile file;
    file.Create(path);
    file.RunSchema(u"client"_s);
    file.Transaction().SetActive(true);
    MarksRowWriter writer(file);
    QStringList strange;
    run.takeValue = [&strange](const QString &key, const QString &thing) {
        if (key == u"strange"_s)
            strange.append(thing);
    };
    run.takeRow = [&](const QString &table, const QList<QVariant> &row) {
        try {
            writer.Append(table, row);
        } catch (const DatabaseError &error) {
            throw DatabaseError(u"a row of %1 (%2, %3) cannot be stored: %4"_s.arg(
                table, row.value(0).toString(), row.value(1).toString(), error.Text().simplified()));
        }
    };
    run.Run(u"restore"_s, {}, report);
    file.Finish(false);
    return strange;
}

} // namespace

std::optional<RestoreOptions> ParseRestore(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Makes a file of marks out of a backup. A file that exists is never touched."_s);
    parser.addPositionalArgument(u"BACKUP"_s, u"Such as backup/TARUNECLIENT-2024-02-29.fbk."_s);
    parser.addOption({u"to"_s, u"The file to make; TARUNECLIENT.FDB beside the tool by default."_s, u"FILE"_s,
                      DefaultFile(Thing::Marks)});
    parser.addOption(
        {u"drop"_s, u"Leaves out what a file of marks has no place for; it is named, and refused else."_s});
    Report::AddOptions(parser);
    if (ParseOrHelp(parser, u"restore [marks] BACKUP [options]"_s, arguments, console))
        return std::nullopt;
    const QStringList rest = WithoutMarksWord(parser.positionalArguments());
    if (rest.size() != 1)
        throw ToolError(u"restore wants one BACKUP; see \"lumivara-data restore --help\""_s);
    return RestoreOptions{rest.first(), parser.value(u"to"_s), parser.isSet(u"drop"_s), Report::OptionsOf(parser)};
}

int Run(const RestoreOptions &options, Console &console)
{
    Report report(console, options.report);
    const QString backup = QFileInfo(options.backup).absoluteFilePath();
    const QString path = QFileInfo(options.to).absoluteFilePath();
    if (!QFileInfo(backup).isFile())
        throw ToolError(u"%1: there is no such file"_s.arg(backup));
    if (QFileInfo::exists(path))
        throw ToolError(u"%1: the file exists; move it away first"_s.arg(path));

    UsePrivateLocks();
    FileInTheMaking making(path);
    SealedRun run(backup, console);
    const bool isRight = AreTheBytesRight(run, options.backup);
    Report found;
    const QStringList strange =
        OnFile(u"%1 into %2"_s.arg(backup, path), [&] { return WriteRows(run, making.Path(), found); });
    for (const QString &thing : strange)
        report.Note(thing, options.drops ? u"left out"_s : u"has no place in a file of marks"_s);
    if (!strange.isEmpty() && !options.drops)
        throw ToolError(u"%1: holds more than marks; --drop leaves it out"_s.arg(options.backup));
    making.FinishNew();
    report.TakeOver(found);
    if (!isRight)
        report.Note(options.backup, u"has no checksum, so damage may have gone unnoticed"_s);
    report.Tell(u"file"_s, path);
    return report.Finish(u"%1 restored"_s.arg(path));
}
