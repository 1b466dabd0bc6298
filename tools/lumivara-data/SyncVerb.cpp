#include "lumivara-data/Verbs.h"

#include "common/Report.h"
#include "lumivara-data/MarksFile.h"
#include "lumivara-data/sync/MarksSync.h"

#include <QCommandLineParser>
#include <QFileInfo>

using namespace Qt::StringLiterals;

std::optional<SyncOptions> ParseSync(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Brings the marks of a reader's machines to the same by way of a folder that some other program carries\n"
        u"between them, also while the program runs: its window of marks shows what has come when it is opened next.\n"
        u"Each machine writes one file there, and reads those of the others. An edit takes the place of what it was\n"
        u"made of, a deletion ends what it was made of, and no edit that it did not know. A mark that was edited on\n"
        u"two machines since they last agreed stands twice from then on, and is named; delete one of the two.\n"
        u"Exit codes: 0 done, 1 done, but a mark stands twice or a file was left out, 2 a failure."_s);
    parser.addOption({u"with"_s, u"The folder."_s, u"FOLDER"_s});
    parser.addOption({u"file"_s, u"The marks; TARUNECLIENT.FDB beside the tool by default."_s, u"FILE"_s,
                      DefaultFile(Thing::Marks)});
    parser.addOption({u"canon"_s,
                      u"A list without a text of collection 6 gets the texts of this canon; KELORA.FDB beside the tool "
                      u"by default."_s,
                      u"FILE"_s});
    parser.addOption({u"dry-run"_s, u"Tells what would come of it, and writes nothing."_s});
    Report::AddOptions(parser);
    if (ParseOrHelp(parser, u"sync [marks] --with FOLDER [options]"_s, arguments, console))
        return std::nullopt;
    if (const QStringList rest = WithoutMarksWord(parser.positionalArguments()); !rest.isEmpty())
        throw ToolError(u"sync does not know \"%1\""_s.arg(rest.first()));
    if (parser.value(u"with"_s).isEmpty())
        throw ToolError(u"sync wants --with FOLDER; see \"lumivara-data sync --help\""_s);
    return SyncOptions{parser.value(u"with"_s), parser.value(u"file"_s), parser.value(u"canon"_s),
                       parser.isSet(u"dry-run"_s), Report::OptionsOf(parser)};
}

int Run(const SyncOptions &options, Console &console)
{
    Report report(console, options.report);
    const QFileInfo folder(options.folder);
    if (!folder.isDir())
        throw ToolError(u"%1: there is no such folder"_s.arg(options.folder));
    const QString path = ChangeMarks(
        options.file, options.canon, console,
        [&](DataFile &file, const QString &marks, const QList<KeloraText> &texts) {
            MarksSync(file, marks, QDir(folder.absoluteFilePath()), texts, options.isTrial, report, console).Run();
        });
    report.Tell(u"file"_s, path);
    return report.Finish(options.isTrial ? u"nothing was written"_s : QString());
}
