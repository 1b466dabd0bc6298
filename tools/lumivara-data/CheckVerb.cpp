#include "lumivara-data/Verbs.h"

#include "common/Console.h"
#include "common/Report.h"
#include "lumivara-data/canon/CanonFile.h"
#include "lumivara-data/dictionary/DictionaryFile.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/files/PrivateCopy.h"
#include "lumivara-data/marks/MarksCheck.h"

#include <QCommandLineParser>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

void Tell(const QList<Finding> &findings, Report &report)
{
    for (const Finding &finding : findings)
        report.Find(finding.row, finding.fault);
}

void ProveCanon(DataFile &file, Console &console, Report &report)
{
    const CheckedCanon canon = ReadCanon(file, console);
    Tell(CheckCanon(canon), report);
    report.Count(u"groups"_s, canon.groups.size());
    report.Count(u"texts"_s, canon.texts.size());
}

void ProveDictionary(DataFile &file, Console &console, Report &report)
{
    const DictionaryReport found = CheckDictionary(file, console);
    Tell(found.findings, report);
    report.Count(u"words"_s, found.wordCount);
    report.AddUntold(found.faultCount - found.findings.size());
}

void ProveMarks(DataFile &file, Report &report)
{
    const MarksReport found = CheckMarks(file);
    Tell(found.findings, report);
    report.Count(u"texts"_s, found.textCount);
    report.Count(u"marks"_s, found.markCount);
}

Thing ThingIn(DataFile &file)
{
    if (IsCanon(file))
        return Thing::Canon;
    if (IsDictionary(file))
        return Thing::Dictionary;
    return IsMarks(file) ? Thing::Marks : Thing::None;
}

} // namespace

std::optional<CheckOptions> ParseCheck(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Tells what is wrong with a canon, a dictionary or a file of marks, one finding a line with the row named, "
        u"and a summary.\n"
        u"The file is only read, a dictionary through its three procedures alone.\n"
        u"Exit codes: 0 clean, 1 findings, 2 wrong usage or a file that is none of these."_s);
    parser.addPositionalArgument(u"FILE"_s, u"Such as KELORA.FDB, PALIDICT.FDB or TARUNECLIENT.FDB."_s);
    Report::AddOptions(parser);
    if (ParseOrHelp(parser, u"check [canon|dictionary|marks] FILE"_s, arguments, console))
        return std::nullopt;
    QStringList words = parser.positionalArguments();
    // A file may be called like one of the three things.
    const Thing wanted = words.size() > 1 ? TakeThing(words) : Thing::None;
    if (words.size() != 1)
        throw ToolError(u"check wants one FILE; see \"lumivara-data check --help\""_s);
    return CheckOptions{words.first(), wanted, Report::OptionsOf(parser)};
}

int Run(const CheckOptions &options, Console &console)
{
    Report report(console, options.report);
    const QTemporaryDir folder;
    if (!folder.isValid())
        throw ToolError(u"there is no place for a temporary copy: %1"_s.arg(folder.errorString()));
    const PrivateCopy copy(options.file, folder.filePath(u"copy.fdb"_s));
    DataFile file;
    OnFile(options.file, [&] {
        file.Open(copy.Path());
        const Thing found = ThingIn(file);
        if (found == Thing::None)
            throw ToolError(
                u"no canon (tables KELORA_TREE, KELORA_CONTENT), no dictionary (procedure SP_GET_LIST_WORDS) "
                "and no file of marks (tables SUTTA_LIST, SUTTA_TEXT_FOCUS)"_s);
        if (options.wanted != Thing::None && options.wanted != found)
            throw ToolError(u"%1: holds a %2, not a %3"_s.arg(options.file, NameOf(found), NameOf(options.wanted)));
        report.Tell(u"kind"_s, NameOf(found));
        if (found == Thing::Canon)
            ProveCanon(file, console, report);
        else if (found == Thing::Dictionary)
            ProveDictionary(file, console, report);
        else
            ProveMarks(file, report);
        file.Close();
    });
    return report.Finish(report.FindingCount() == 0 ? u"nothing wrong"_s : u"%1 findings"_s.arg(report.FindingCount()));
}
