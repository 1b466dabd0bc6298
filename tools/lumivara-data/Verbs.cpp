#include "lumivara-data/Verbs.h"

#include "lumivara-data/Console.h"
#include "stores/DatabaseError.h"

#include <QCommandLineParser>

using namespace Qt::StringLiterals;

namespace {

struct Verb
{
    const char16_t *name;
    const char16_t *summary;
    int (*run)(const QStringList &, Console &);
};

constexpr Verb Table[] = {
    {u"build", u"make the databases from their sources", RunBuild},
    {u"check", u"tell what is wrong with a canon or a dictionary", RunCheck},
};

QString Usage()
{
    QString text = u"Usage: lumivara-data VERB [options]\n\nVerbs:\n"_s;
    for (const Verb &verb : Table)
        text += u"  %1  %2\n"_s.arg(QString::fromUtf16(verb.name).leftJustified(8), QString::fromUtf16(verb.summary));
    text += u"\n\"lumivara-data VERB --help\" tells a verb's options.\n"_s;
    text += u"Exit codes: 0 clean, 1 findings, 2 wrong usage or a file that cannot be read or written.\n"_s;
    return text;
}

int RunVerb(const Verb &verb, const QStringList &arguments, Console &console)
{
    try {
        return verb.run(arguments, console);
    } catch (const ToolError &error) {
        console.Error(error.Text());
    } catch (const DatabaseError &error) {
        console.Error(error.Text());
    } catch (const std::exception &error) {
        console.Error(QString::fromUtf8(error.what()));
    }
    return ExitCode::Failure;
}

} // namespace

int RunTool(const QStringList &arguments, Console &console)
{
    const QString name = arguments.value(0);
    if (name == u"--help"_s || name == u"-h"_s) {
        console.Print(Usage());
        return ExitCode::Clean;
    }
    for (const Verb &verb : Table) {
        if (name == QString::fromUtf16(verb.name))
            return RunVerb(verb, arguments.mid(1), console);
    }
    console.Error(name.isEmpty() ? u"a verb is missing"_s : u"there is no verb \"%1\""_s.arg(name));
    console.PrintError(Usage());
    return ExitCode::Failure;
}

bool ParseOrHelp(QCommandLineParser &parser, const QString &synopsis, const QStringList &arguments, Console &console)
{
    parser.addOption({{u"h"_s, u"help"_s}, u"Shows this text."_s});
    if (!parser.parse(QStringList{u"lumivara-data"_s} + arguments))
        throw ToolError(parser.errorText());
    if (!parser.isSet(u"help"_s))
        return false;
    // The parser's own first line knows nothing of verbs.
    console.Print(u"Usage: lumivara-data "_s + synopsis + u'\n' + parser.helpText().section(u'\n', 1));
    return true;
}
