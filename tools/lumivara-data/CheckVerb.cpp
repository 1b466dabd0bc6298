#include "lumivara-data/Verbs.h"

#include "common/Console.h"
#include "common/Report.h"
#include "lumivara-data/sealed/Examination.h"
#include "lumivara-data/sealed/SealedRun.h"

#include <QCommandLineParser>

using namespace Qt::StringLiterals;

std::optional<CheckOptions> ParseCheck(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Tells what is wrong with a canon, a dictionary or a file of marks, one finding a line with the row named, "
        u"and a summary.\n"
        u"The file is only read, a dictionary through its procedures, and its forms from their table.\n"
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

namespace {

/// What the file asks of Firebird besides keeping rows, and what that means in the program.
void TellWishes(const StoredFile &facts, Report &report)
{
    if (facts.namesFiles)
        report.Find(u"the file"_s, u"names shadows or other files; the program reads a private copy without them"_s);
    if (facts.WantsTooMuchCache())
        report.Find(u"the file"_s,
                    u"asks for a cache of %1 MB; the program reads a private copy"_s.arg(facts.cacheBytes >> 20));
}

void TellAbility(const QString &key, const QString &thing, Report &report)
{
    if (key == Ability::Dynamic)
        report.Find(thing,
                    u"composes statements when it runs; the program reads a private copy, where they do nothing, "
                    "and refuses a file of marks"_s);
    else if (key == Ability::ForeignCode)
        report.Find(thing, u"is code outside of the file; the program does not open it"_s);
    else if (key == Ability::Outside)
        report.Note(thing, u"lies outside of the file and is never read"_s);
    else if (key == Ability::AtConnection)
        report.Note(thing, u"would run at a connection and is never run"_s);
}

} // namespace

int Run(const CheckOptions &options, Console &console)
{
    Report report(console, options.report);
    SealedRun run(options.file, console);
    const StoredFile facts = run.PrepareDatabase();
    QString kind;
    Report found;
    run.takeValue = [&](const QString &key, const QString &value) {
        if (key == u"kind"_s)
            kind = value;
        else
            TellAbility(key, value, found);
    };
    run.Run(u"check"_s, {}, found);
    if (kind.isEmpty()) {
        throw ToolError(
            u"%1: no canon (tables KELORA_TREE, KELORA_CONTENT), no dictionary (procedure "
            "SP_GET_LIST_WORDS) and no file of marks (tables SUTTA_LIST, SUTTA_TEXT_FOCUS)"_s.arg(options.file));
    }
    if (options.wanted != Thing::None && kind != NameOf(options.wanted))
        throw ToolError(u"%1: holds a %2, not a %3"_s.arg(options.file, kind, NameOf(options.wanted)));
    report.Tell(u"kind"_s, kind);
    report.TakeOver(found);
    TellWishes(facts, report);
    return report.Finish(report.FindingCount() == 0 ? u"nothing wrong"_s : u"%1 findings"_s.arg(report.FindingCount()));
}
