#include "lumivara-data/Verbs.h"

#include "common/Console.h"
#include "stores/Schema.h"

#include <QCoreApplication>
#include <QDir>

namespace {

struct ThingName
{
    Thing thing;
    QStringView name;
    SchemaName file;
};

constexpr ThingName Things[] = {
    {Thing::Canon, u"canon", DatabaseFile::Canon},
    {Thing::Dictionary, u"dictionary", DatabaseFile::Dictionary},
    {Thing::Marks, u"marks", DatabaseFile::Marks},
};

using RunThing = int (*)(const QStringList &, Console &);

/// Runs what the first of the arguments means. Options before it, or none of the three words, leave nothing to run but
/// `fallback`, if there is one.
int RunByThing(const QString &verb, QStringList arguments, Console &console, RunThing canon, RunThing dictionary,
               RunThing marks, RunThing fallback = nullptr)
{
    if (const QString first = arguments.value(0); first == u"--help" || first == u"-h") {
        console.Print(QStringLiteral("Usage: %1 %2 canon|dictionary|marks …\n\n"
                                     "\"%1 %2 canon --help\" tells the options of that one.\n")
                          .arg(console.Tool(), verb));
        return ExitCode::Clean;
    }
    switch (TakeThing(arguments)) {
    case Thing::Canon:
        return canon(arguments, console);
    case Thing::Dictionary:
        return dictionary(arguments, console);
    case Thing::Marks:
        return marks(arguments, console);
    case Thing::None:
        break;
    }
    if (!fallback)
        throw ToolError(QStringLiteral("%1 wants to know what: canon, dictionary or marks").arg(verb));
    return fallback(arguments, console);
}

int RunImport(const QStringList &arguments, Console &console)
{
    return RunByThing(QStringLiteral("import"), arguments, console, ParseAndRun<ParseImportCanon>,
                      ParseAndRun<ParseImportDictionary>, ParseAndRun<ParseImportMarks>);
}

int RunExport(const QStringList &arguments, Console &console)
{
    return RunByThing(QStringLiteral("export"), arguments, console, ParseAndRun<ParseExportCanon>,
                      ParseAndRun<ParseExportDictionary>, ParseAndRun<ParseExportMarks>, ParseAndRun<ParseExportMarks>);
}

constexpr Verb AllVerbs[] = {
    {u"build", u"make the databases from their sources", ParseAndRun<ParseBuild>},
    {u"check", u"tell what is wrong with a canon, a dictionary or a file of marks", ParseAndRun<ParseCheck>},
    {u"backup", u"save the marks, also while the program runs", ParseAndRun<ParseBackup>},
    {u"restore", u"make a file of marks out of a backup", ParseAndRun<ParseRestore>},
    {u"import", u"make a canon, a dictionary or marks out of open formats", RunImport},
    {u"export", u"write a canon, a dictionary or marks in open formats", RunExport},
    {u"sync", u"bring the marks of several machines to the same", ParseAndRun<ParseSync>},
    {u"words", u"find the dictionary words behind the forms of a text", ParseAndRun<ParseWords>},
    {u"update-list", u"bring the texts that marks need up to a canon", ParseAndRun<ParseUpdateList>},
    {u"forget-me", u"remove what the program keeps for this user, but not the notes", ParseAndRun<ParseForgetMe>},
    // Without a summary, for the program and the tool themselves.
    {u"scout", u"", RunScout},
    {u"sealed", u"", RunSealed},
};

} // namespace

std::span<const Verb> DataVerbs()
{
    return AllVerbs;
}

Thing TakeThing(QStringList &words)
{
    for (const ThingName &known : Things) {
        if (words.value(0) == known.name) {
            words.removeFirst();
            return known.thing;
        }
    }
    return Thing::None;
}

QString NameOf(Thing thing)
{
    for (const ThingName &known : Things) {
        if (known.thing == thing)
            return known.name.toString();
    }
    return {};
}

QStringList WithoutMarksWord(const QStringList &positional)
{
    QStringList rest = positional;
    return TakeThing(rest) == Thing::Marks ? rest : positional;
}

QString DefaultFile(Thing thing)
{
    for (const ThingName &known : Things) {
        if (known.thing == thing)
            return QDir(QCoreApplication::applicationDirPath()).filePath(known.file);
    }
    return {};
}
