#include "lumivara-data/Verbs.h"

#include "common/Console.h"
#include "common/Interrupt.h"
#include "common/Report.h"
#include "lumivara-data/MarksFile.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/files/HtmlText.h"
#include "lumivara-data/marks/MarksReader.h"
#include "lumivara-data/marks/MarksStore.h"

#include <QCommandLineParser>
#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QHash>

using namespace Qt::StringLiterals;

namespace {

/// What two marks must share to be one. A Markdown document shows texts without their mark-up and spacing, so by
/// these it can only be compared.
QByteArray Identity(const Mark &mark, bool asShown)
{
    const auto lines = [&](const QString &text) {
        QStringList shown = WithUnixLineEnds(text).split(u'\n');
        for (QString &line : shown)
            line = line.trimmed();
        return asShown ? shown.join(u'\n').trimmed() : text;
    };
    const QString title = QString(mark.title).remove(QChar::ByteOrderMark);
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    const QString html = ExcerptHtml(mark);
    const QByteArray page = mark.excerpt.isValidUtf8() ? html.toUtf8() : mark.excerpt;
    // Null and empty are one text.
    for (const QString &text : {asShown ? title.simplified() : title, lines(mark.keywords), lines(mark.note),
                                asShown ? lines(TextOfHtml(html)) : QString()})
        stream << text.toUtf8().append('.');
    stream << (asShown ? QByteArray() : page + '.') << mark.collection << mark.text << mark.priority.value_or(0);
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
}

bool IsMarkdown(const QString &name)
{
    if (name == u"csv"_s)
        return false;
    if (name == u"md"_s || name == u"markdown"_s)
        return true;
    throw ToolError(u"there is no format \"%1\" to import marks from: csv or markdown"_s.arg(name));
}

/// Reads the source, reports what it skips, and passes new marks to the store.
void Compare(MarksReader &source, const QFile &input, bool isMarkdown, DataFile &file, MarksStore &store,
             Report &report, Console &console)
{
    QHash<QByteArray, qsizetype> known, met;
    VisitMarks(file, [&](const Mark &mark) {
        ThrowIfInterrupted();
        ++known[Identity(mark, isMarkdown)];
    });
    qsizetype there = 0;
    for (MarkAtLine mark; source.Next(mark);) {
        console.Progress(u"reading marks"_s, input.pos(), input.size(), u"bytes"_s);
        if (!store.IsStorable(mark.mark)) {
            report.Find(u"%1:%2"_s.arg(input.fileName()).arg(mark.line),
                        u"holds a character that this file of marks cannot store (above U+FFFF)"_s);
            continue;
        }
        store.Want(mark.mark);
        const QByteArray identity = Identity(mark.mark, isMarkdown);
        // An export has as many equal marks as its file; what was written by hand only repeats itself.
        const qsizetype before = met[identity]++;
        if (mark.isExact ? before < known.value(identity) : before > 0 || known.contains(identity)) {
            ++there;
            continue;
        }
        store.Append(mark);
    }
    console.EndProgress();
    report.Count(u"marks added"_s, store.Count());
    report.Count(u"there already"_s, there);
    report.Count(u"left out"_s, report.FindingCount());
}

} // namespace

std::optional<ImportMarksOptions> ParseImportMarks(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Adds marks out of a file that \"export marks\" has written, also while the program runs: all that are new,\n"
        u"or after a failure none. A mark is there already if its text, title, keywords, note, priority and excerpt\n"
        u"are; its key and its date mean nothing. Texts that the list lacks are added, so that each mark is shown.\n"
        u"A mark out of Markdown gets a new page around the plain text of its excerpt."_s);
    parser.addPositionalArgument(u"FILE"_s, u"The marks, as CSV or Markdown in UTF-8."_s);
    parser.addOption({u"into"_s, u"The marks to add to; TARUNECLIENT.FDB beside the tool by default."_s, u"FILE"_s,
                      DefaultFile(Thing::Marks)});
    parser.addOption({u"canon"_s,
                      u"A list without a text of collection 6 gets the texts of this canon; KELORA.FDB beside the tool "
                      u"by default."_s,
                      u"FILE"_s});
    parser.addOption({u"format"_s, u"csv or markdown; by the ending of FILE by default."_s, u"FORMAT"_s});
    Report::AddOptions(parser);
    if (ParseOrHelp(parser, u"import marks FILE [options]"_s, arguments, console))
        return std::nullopt;
    if (parser.positionalArguments().size() != 1)
        throw ToolError(u"import marks wants one FILE; see \"lumivara-data import marks --help\""_s);
    const QString file = parser.positionalArguments().first();
    return ImportMarksOptions{
        file, parser.value(u"into"_s), parser.value(u"canon"_s),
        IsMarkdown(parser.isSet(u"format"_s) ? parser.value(u"format"_s) : QFileInfo(file).suffix().toLower()),
        Report::OptionsOf(parser)};
}

int Run(const ImportMarksOptions &options, Console &console)
{
    Report report(console, options.report);
    const QString &name = options.file;
    QFile input(name);
    OpenSource(input);
    const QString path = ChangeMarks(options.into, options.canon, console,
                                     [&](DataFile &file, const QString &marks, const QList<KeloraText> &texts) {
                                         MarksStore store(file, marks, name, texts, report);
                                         std::unique_ptr<MarksReader> source;
                                         if (options.isMarkdown)
                                             source =
                                                 std::make_unique<MarkdownMarks>(input, name, report, store.Texts());
                                         else
                                             source = std::make_unique<CsvMarks>(input, name, report);
                                         Compare(*source, input, options.isMarkdown, file, store, report, console);
                                         store.Write(console);
                                     });
    report.Tell(u"file"_s, path);
    return report.Finish();
}
