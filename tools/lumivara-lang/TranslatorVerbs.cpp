#include "lumivara-lang/Verbs.h"

#include "common/Console.h"
#include "lumivara-lang/LanguageCheck.h"
#include "lumivara-lang/WindowTables.h"
#include "presentation/languages/Locales.h"
#include "presentation/languages/Translations.h"

#include <QCommandLineParser>
#include <QFile>
#include <QSet>

using namespace Qt::StringLiterals;

namespace {

const QCommandLineOption RootOption(u"root"_s, u"The folder with \"src\" and \"data\"; the current one by default."_s,
                                    u"DIR"_s, u"."_s);

QList<WindowTable> WindowsOf(const QCommandLineParser &parser)
{
    const SourceTree sources(parser.value(RootOption));
    return sources.Windows(NumberLedger::Read(sources.LedgerPath()));
}

/// A new language file: all texts with the windows' own words as values, to be overwritten.
QString FreshFile(quint16 id, const QList<WindowTable> &windows)
{
    const LocaleRow *locale = FindLocale(id);
    QString text = u"; Lumivara: %1\n"_s.arg(locale ? QString::fromUtf8(locale->englishName) : QString::number(id));
    text += u"; Replace what stands behind each \"=\". \"\\n\" is a line break, \"\\\\\" a backslash.\n"_s;
    text += u"LANGID=%1\n"_s.arg(id);
    for (const WindowTable &window : windows) {
        text += u"\n[%1]\n"_s.arg(window.section);
        for (const WindowText &entry : window.texts) {
            if (entry.isMeantForReaders)
                text += u"; %1\n%2=%3\n"_s.arg(entry.name)
                            .arg(entry.number, 8, 10, QLatin1Char('0'))
                            .arg(EncodeLangValue(entry.value).trimmed());
        }
    }
    return text;
}

} // namespace

int RunList(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Lists the texts of the windows, one a line: section, number, component.property and the text as a language\n"
        u"file would write it, parted by tabs. A text without a number stands with the one that it would get.\n"
        u"Exit codes: 0 done, 2 wrong usage or a file that cannot be read."_s);
    parser.addPositionalArgument(u"FILE"_s, u"With --untranslated: the language file; English.lng by default."_s,
                                 u"[FILE.lng]"_s);
    const QCommandLineOption untranslated(
        u"untranslated"_s, u"Lists only texts meant for readers for which the language file has nothing."_s);
    parser.addOptions({RootOption, untranslated});
    if (ParseOrHelp(parser, u"list [options] [FILE.lng]"_s, arguments, console))
        return ExitCode::Clean;
    const QStringList files = parser.positionalArguments();
    if (files.size() > (parser.isSet(untranslated) ? 1 : 0))
        throw ToolError(u"list wants one FILE, and only with --untranslated; see \"lumivara-lang list --help\""_s);

    TDKLang_CompTranslations language;
    if (parser.isSet(untranslated))
        language.LoadFromFile(files.value(0, SourceTree(parser.value(RootOption)).EnglishPath()));
    for (const WindowTable &window : WindowsOf(parser)) {
        const TDKLang_CompTranslation *section = language.FindSection(window.section);
        for (const WindowText &text : window.texts) {
            if (parser.isSet(untranslated) && (!text.isMeantForReaders || (section && section->Find(text.number))))
                continue;
            console.Print(
                u"%1\t%2\t%3\t%4\n"_s.arg(window.section).arg(text.number).arg(text.name, EncodeLangValue(text.value)));
        }
    }
    return ExitCode::Clean;
}

int RunCheckLanguage(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Tells what is wrong with a language file, one finding a line with its place: lines that the program skips,\n"
        u"sections and numbers that it does not know, numbers that stand twice, texts that are missing, and "
        u"mnemonics,\n"
        u"placeholders and line breaks that a translation has lost.\n"
        u"Exit codes: 0 clean, 1 findings, 2 wrong usage or a file that cannot be read."_s);
    parser.addPositionalArgument(u"FILE"_s, u"The language file."_s, u"FILE.lng"_s);
    parser.addOption(RootOption);
    if (ParseOrHelp(parser, u"check [options] FILE.lng"_s, arguments, console))
        return ExitCode::Clean;
    if (parser.positionalArguments().size() != 1)
        throw ToolError(u"check wants one FILE; see \"lumivara-lang check --help\""_s);

    const QString path = parser.positionalArguments().first();
    QFile file(path);
    OpenSource(file);
    const QList<LanguageFinding> findings = CheckLanguage(LinesOf(file.readAll()), WindowsOf(parser));
    for (const LanguageFinding &finding : findings)
        console.Print(u"%1:%2: %3\n"_s.arg(path).arg(finding.line).arg(finding.text));
    return findings.isEmpty() ? ExitCode::Clean : ExitCode::Findings;
}

int RunFresh(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Writes a new language file for a translator: each text with its Vietnamese words as value. UTF-8.\n"
        u"Exit codes: 0 done, 2 wrong usage or a file that cannot be written; one that exists stays."_s);
    parser.addPositionalArgument(u"LANGID"_s, u"The language's number in decimal, such as 1036 for French."_s);
    parser.addPositionalArgument(u"FILE"_s, u"The file to write; standard output by default."_s, u"[FILE.lng]"_s);
    parser.addOption(RootOption);
    if (ParseOrHelp(parser, u"fresh [options] LANGID [FILE.lng]"_s, arguments, console))
        return ExitCode::Clean;
    const QStringList words = parser.positionalArguments();
    const quint16 id = words.value(0).toUShort();
    if (id == 0 || words.size() > 2)
        throw ToolError(
            u"fresh wants a LANGID from 1 to 65535 and at most one FILE; see \"lumivara-lang fresh --help\""_s);

    const QString text = FreshFile(id, WindowsOf(parser));
    if (words.size() == 1) {
        console.Put(text);
        return ExitCode::Clean;
    }
    QFile file(words[1]);
    const QByteArray bytes = text.toUtf8();
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        throw ToolError(u"%1: %2"_s.arg(words[1], file.errorString()));
    if (file.write(bytes) != bytes.size() || !file.flush()) {
        // Half of one would stay in the way of the next.
        const QString fault = file.errorString();
        file.close();
        QFile::remove(words[1]);
        throw ToolError(u"%1: %2"_s.arg(words[1], fault));
    }
    return ExitCode::Clean;
}
