#include "lumivara-data/Verbs.h"

#include "common/Report.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/files/UnfinishedFile.h"
#include "lumivara-data/marks/MarksCheck.h"
#include "stores/KeloraDM.h"
#include "stores/engine/BackupService.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

/// Throws unless a restored file is one of marks; returns their number.
QString Proved(const QString &path)
{
    DataFile file;
    file.Open(path);
    if (!IsMarks(file))
        throw ToolError(u"the backup holds no marks, or not all of them"_s);
    const MarksReport report = CheckMarks(file);
    file.Close();
    return u"%1 texts, %2 marks"_s.arg(report.textCount).arg(report.markCount);
}

} // namespace

std::optional<RestoreOptions> ParseRestore(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Makes a file of marks out of a backup. A file that exists is never touched."_s);
    parser.addPositionalArgument(u"BACKUP"_s, u"Such as backup/TARUNECLIENT-2024-02-29.fbk."_s);
    parser.addOption({u"to"_s, u"The file to make; TARUNECLIENT.FDB beside the tool by default."_s, u"FILE"_s,
                      DefaultFile(Thing::Marks)});
    Report::AddOptions(parser);
    if (ParseOrHelp(parser, u"restore [marks] BACKUP [options]"_s, arguments, console))
        return std::nullopt;
    const QStringList rest = WithoutMarksWord(parser.positionalArguments());
    if (rest.size() != 1)
        throw ToolError(u"restore wants one BACKUP; see \"lumivara-data restore --help\""_s);
    return RestoreOptions{rest.first(), parser.value(u"to"_s), Report::OptionsOf(parser)};
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

    FileInTheMaking making(path);
    const QString content = OnFile(u"%1 into %2"_s.arg(backup, path), [&] {
        BackupService(ClientLibraryPath(QCoreApplication::applicationDirPath() + u'/')).Restore(backup, making.Path());
        return Proved(making.Path());
    });
    making.FinishNew();
    report.Say(u"%1: restored, %2"_s.arg(path, content));
    report.Tell(u"file"_s, path);
    return report.Finish();
}
