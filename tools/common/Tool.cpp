#include "common/Tool.h"

#include "base/Messages.h"
#include "common/Console.h"
#include "common/Interrupt.h"

#include <QCommandLineParser>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace {

QString Usage(std::span<const Verb> verbs, const QString &tool)
{
    QString text = u"Usage: %1 VERB [options]\n\nVerbs:\n"_s.arg(tool);
    constexpr qsizetype leastWidth = 8;
    qsizetype width = leastWidth;
    for (const Verb &verb : verbs)
        width = qMax(width, QStringView(verb.name).size());
    for (const Verb &verb : verbs) {
        if (verb.summary[0] == u'\0')
            continue;
        text +=
            u"  %1  %2\n"_s.arg(QString::fromUtf16(verb.name).leftJustified(width), QString::fromUtf16(verb.summary));
    }
    text += u"\n\"%1 VERB --help\" tells a verb's options.\n"_s.arg(tool);
    text += u"Exit codes: 0 clean, 1 findings, 2 wrong usage or a file that cannot be read or written.\n"_s;
    return text;
}

int RunVerb(const Verb &verb, const QStringList &arguments, Console &console)
{
    int code = ExitCode::Failure;
    try {
        code = verb.run(arguments, console);
    } catch (const std::exception &error) {
        QString text = QString::fromUtf8(error.what());
        // What can't be printed is told below, and an interrupt by the thread that waits for it, if that was first.
        if (!console.IsOutputWhole() || (WasInterrupted() && !TakeLastWord()))
            return code;
        // The engine hears of it too, and its words for that are other ones.
        const QString interrupted = Sentence({u"bị ngắt", u"interrupted"});
        if (WasInterrupted() && !text.startsWith(interrupted))
            text.prepend(interrupted + u": "_s);
        console.Error(text);
        // With --json even a failure prints JSON.
        if (arguments.contains("--json"_L1)) {
            QJsonObject report = console.KeptReport();
            report[u"error"_s] = text;
            console.Print(QString::fromUtf8(QJsonDocument(report).toJson()));
        }
    }
    return code;
}

int CodeOf(int code, Console &console)
{
    if (console.IsOutputWhole())
        return code;
    console.Error(u"the standard output cannot be written"_s);
    return ExitCode::Failure;
}

} // namespace

void OpenSource(QFile &file)
{
    const QFileInfo info(file.fileName());
    if (!info.exists())
        throw ToolError(Sentence({u"%1: không có tệp này", u"%1: there is no such file"}).arg(file.fileName()));
    if (!info.isFile())
        throw ToolError(Sentence({u"%1: không phải là tệp thường", u"%1: is no regular file"}).arg(file.fileName()));
    if (!file.open(QIODevice::ReadOnly))
        throw ToolError(u"%1: %2"_s.arg(file.fileName(), file.errorString()));
}

int RunTool(std::span<const Verb> verbs, const QStringList &arguments, Console &console)
{
    const QString name = arguments.value(0);
    if (name == u"--help"_s || name == u"-h"_s) {
        console.Print(Usage(verbs, console.Tool()));
        return CodeOf(ExitCode::Clean, console);
    }
    for (const Verb &verb : verbs) {
        if (name == QString::fromUtf16(verb.name))
            return CodeOf(RunVerb(verb, arguments.mid(1), console), console);
    }
    console.Error(name.isEmpty() ? u"a verb is missing"_s : u"there is no verb \"%1\""_s.arg(name));
    console.PrintError(Usage(verbs, console.Tool()));
    return ExitCode::Failure;
}

bool ParseOrHelp(QCommandLineParser &parser, const QString &synopsis, const QStringList &arguments, Console &console)
{
    parser.addOption({{u"h"_s, u"help"_s}, u"Shows this text."_s});
    if (!parser.parse(QStringList{console.Tool()} + arguments))
        throw ToolError(parser.errorText());
    if (!parser.isSet(u"help"_s))
        return false;
    // The parser's own first line knows nothing of verbs.
    console.Print(u"Usage: %1 %2\n"_s.arg(console.Tool(), synopsis) + parser.helpText().section(u'\n', 1));
    return true;
}
