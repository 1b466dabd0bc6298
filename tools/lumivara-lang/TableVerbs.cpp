#include "lumivara-lang/Verbs.h"

#include "common/Console.h"
#include "lumivara-lang/WindowTables.h"

#include <QCommandLineParser>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QCommandLineOption RootOption(u"root"_s, u"The folder with \"src\" and \"data\"; the current one by default."_s,
                                    u"DIR"_s, u"."_s);

QString Named(const WindowTable &window, const WindowText &text)
{
    return u"%1 %2 %3"_s.arg(window.section).arg(text.number).arg(text.name);
}

QByteArray BytesOrNothing(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// An up-to-date table is not written, so that nothing is rebuilt.
void WriteTable(const WindowTable &window, Console &console)
{
    if (BytesOrNothing(window.LangDataPath()) == window.langData)
        return;
    QSaveFile file(window.LangDataPath());
    if (!file.open(QIODevice::WriteOnly) || file.write(window.langData) != window.langData.size() || !file.commit())
        throw ToolError(u"%1: %2"_s.arg(window.LangDataPath(), file.errorString()));
    console.Print(u"wrote %1\n"_s.arg(window.LangDataPath()));
}

QList<WindowTable> Chosen(const QStringList &paths, const SourceTree &sources, const NumberLedger &ledger)
{
    if (paths.isEmpty())
        return sources.Windows(ledger);
    QList<WindowTable> windows;
    for (const QString &path : paths)
        windows.append(NumberWindow(path, ledger));
    return windows;
}

} // namespace

int RunNumber(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Gives each text of the windows that has no number the next one, notes it in data/languages/numbers.tsv and\n"
        u"writes each window's table beside its description. A number is never given to another text: where a text is\n"
        u"gone nothing is written, unless its number is to be retired.\n"
        u"Exit codes: 0 done, 1 a text is gone or the numbers are damaged, 2 wrong usage or a file that cannot be read."_s);
    parser.addPositionalArgument(u"WINDOW.ui"_s, u"Windows to number; all by default."_s, u"[WINDOW.ui...]"_s);
    const QCommandLineOption retire(u"retire"_s, u"Retires the numbers of texts that are gone."_s);
    parser.addOptions({RootOption, retire});
    if (ParseOrHelp(parser, u"number [options] [WINDOW.ui...]"_s, arguments, console))
        return ExitCode::Clean;

    const SourceTree sources(parser.value(RootOption));
    NumberLedger ledger = NumberLedger::Read(sources.LedgerPath());
    QStringList findings = ledger.Problems();
    const QList<WindowTable> windows = Chosen(parser.positionalArguments(), sources, ledger);
    for (const WindowTable &window : windows) {
        for (const WindowText &text : window.gone) {
            if (parser.isSet(retire))
                ledger.Retire(window.section, text.number);
            else
                findings += u"%1 is gone: put it back, or retire its number with --retire"_s.arg(Named(window, text));
        }
        for (const WindowText &text : window.newOnes)
            ledger.Add(window.section, text.number, text.name);
    }
    if (!findings.isEmpty()) {
        console.Print(findings.join(u'\n') + u'\n');
        return ExitCode::Findings;
    }
    ledger.Append(sources.LedgerPath());
    for (const WindowTable &window : windows) {
        for (const WindowText &text : window.newOnes)
            console.Print(u"new %1\n"_s.arg(Named(window, text)));
        for (const WindowText &text : window.gone)
            console.Print(u"retired %1\n"_s.arg(Named(window, text)));
        WriteTable(window, console);
    }
    return ExitCode::Clean;
}

int RunVerify(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Tells where the windows, their tables and data/languages/numbers.tsv disagree; one finding a line.\n"
        u"Exit codes: 0 clean, 1 findings, 2 wrong usage or a file that cannot be read."_s);
    parser.addOption(RootOption);
    if (ParseOrHelp(parser, u"verify [options]"_s, arguments, console))
        return ExitCode::Clean;
    if (!parser.positionalArguments().isEmpty())
        throw ToolError(u"verify wants no arguments; see \"lumivara-lang verify --help\""_s);

    const SourceTree sources(parser.value(RootOption));
    const NumberLedger ledger = NumberLedger::Read(sources.LedgerPath());
    const QList<WindowTable> windows = sources.Windows(ledger);
    QStringList findings = ledger.Problems();
    for (const QString &section : ledger.Sections()) {
        if (std::ranges::find(windows, section, &WindowTable::section) == windows.end() &&
            !ledger.Numbers(section).isEmpty())
            findings += u"%1 has numbers and is no window"_s.arg(section);
    }
    for (const WindowTable &window : windows) {
        for (const WindowText &text : window.gone)
            findings += u"%1 has vanished from %2"_s.arg(Named(window, text), window.uiPath);
        for (const WindowText &text : window.newOnes)
            findings += u"%1 %2 has no number"_s.arg(window.section, text.name);
        if (!QFileInfo::exists(window.LangDataPath()))
            findings += u"%1 is missing"_s.arg(window.LangDataPath());
        else if (BytesOrNothing(window.LangDataPath()) != window.langData)
            findings += u"%1 is not the table of %2"_s.arg(window.LangDataPath(), window.uiPath);
    }
    if (findings.isEmpty())
        return ExitCode::Clean;
    console.Print(findings.join(u'\n') + u'\n');
    return ExitCode::Findings;
}
