#include "lumivara-data/Verbs.h"

#include "common/Console.h"
#include "common/Report.h"
#include "lumivara-data/canon/ClientList.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/marks/MarksCheck.h"
#include "lumivara-data/sealed/Examination.h"

#include <QCommandLineParser>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

void MustExist(const QString &path)
{
    if (!QFileInfo(path).isFile())
        throw ToolError(u"%1: there is no such file"_s.arg(path));
}

} // namespace

std::optional<UpdateListOptions> ParseUpdateList(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Compares the list of texts in a file of marks with a canon: a mark whose text the list lacks is not shown, "
        u"and\n"
        u"one whose text has another name there is shown under that. Tells the missing texts and the differing names;\n"
        u"with --write adds the first and renews the second, also while the program runs. Marks are never touched, "
        u"nor\n"
        u"are texts that the canon does not have.\n"
        u"Exit codes: 0 the list is up to the canon, 1 it is not and nothing was written, 2 a failure."_s);
    parser.addOption({u"file"_s, u"The marks; TARUNECLIENT.FDB beside the tool by default."_s, u"FILE"_s,
                      DefaultFile(Thing::Marks)});
    parser.addOption(
        {u"canon"_s, u"The canon; KELORA.FDB beside the tool by default."_s, u"FILE"_s, DefaultFile(Thing::Canon)});
    parser.addOption({u"write"_s, u"Changes the list."_s});
    Report::AddOptions(parser);
    if (ParseOrHelp(parser, u"update-list [options]"_s, arguments, console))
        return std::nullopt;
    if (const QStringList rest = parser.positionalArguments(); !rest.isEmpty())
        throw ToolError(u"update-list does not know \"%1\""_s.arg(rest.first()));
    return UpdateListOptions{parser.value(u"file"_s), parser.value(u"canon"_s), parser.isSet(u"write"_s),
                             Report::OptionsOf(parser)};
}

int Run(const UpdateListOptions &options, Console &console)
{
    Report report(console, options.report);
    const QString path = QFileInfo(options.file).absoluteFilePath();
    MustExist(path);
    MustExist(options.canon);
    const QList<KeloraText> texts = ClientList::TextsOf(QFileInfo(options.canon).absoluteFilePath(), console);
    OnFile(path, [&] {
        DataFile file;
        file.Open(OpenablePath(path, !options.writes, console));
        if (!IsMarks(file))
            throw ToolError(u"%1: no file of marks (tables SUTTA_LIST, SUTTA_TEXT_FOCUS)"_s.arg(path));
        const QList<ClientList::Change> changes = ClientList::Changes(file, texts);
        if (options.writes && !changes.isEmpty()) {
            ClientList::Make(file, changes);
            ClientList::Finish(file, path);
        }
        qsizetype added = 0;
        for (const ClientList::Change &change : changes) {
            const QString place = u"text %1"_s.arg(change.number);
            if (options.writes)
                report.Note(place, ClientList::InWords(change));
            else
                report.Find(place, ClientList::InWords(change));
            added += change.isNew ? 1 : 0;
        }
        report.Count(options.writes ? u"texts added"_s : u"texts missing"_s, added);
        report.Count(options.writes ? u"names renewed"_s : u"names differ"_s, changes.size() - added);
    });
    report.Tell(u"file"_s, path);
    return report.Finish(report.FindingCount() > 0 ? u"nothing was written; --write does it"_s : QString());
}
