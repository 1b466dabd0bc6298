#include "lumivara-data/Verbs.h"

#include "common/Console.h"
#include "common/Report.h"
#include "lumivara-data/dictionary/DictionaryFile.h"
#include "lumivara-data/dictionary/DictionaryReader.h"
#include "lumivara-data/dictionary/DictionaryWriter.h"
#include "lumivara-data/dictionary/StarDictWriter.h"
#include "lumivara-data/dictionary/WordLines.h"
#include "lumivara-data/files/PrivateCopy.h"
#include "lumivara-data/files/UnfinishedFile.h"
#include "stores/Schema.h"

#include <QCommandLineParser>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

/// What takes the words one by one.
class WordSink
{
public:
    virtual ~WordSink() = default;
    virtual void Add(const QString &word, const QByteArray &content) = 0;
    virtual void Finish() = 0;
};

class TabbedSink : public WordSink
{
public:
    explicit TabbedSink(const QString &path) : m_file(path) {}
    void Add(const QString &word, const QByteArray &content) override
    {
        m_line.resize(0);
        AppendEscapedEntry(m_line, word.toUtf8());
        m_line += '\t';
        AppendEscapedEntry(m_line, content);
        m_line += '\n';
        m_file.Write(m_line);
    }
    void Finish() override { m_file.Finish(); }

private:
    WrittenFile m_file;
    QByteArray m_line;
};

class MarkUpSink : public WordSink
{
public:
    MarkUpSink(const QString &path, int kind) : m_file(path)
    {
        m_file.Write("dictionary " + QByteArray::number(kind) + '\n');
    }
    void Add(const QString &word, const QByteArray &content) override
    {
        m_file.Write("\n% " + word.toUtf8() + '\n' + MarkUpWords::Written(content));
    }
    void Finish() override { m_file.Finish(); }

private:
    WrittenFile m_file;
};

class StarDictSink : public WordSink
{
public:
    StarDictSink(const QString &path, int kind) : m_writer(path, kind) {}
    void Add(const QString &word, const QByteArray &content) override { m_writer.Add(word, content); }
    void Finish() override { m_writer.Finish(); }

private:
    StarDictWriter m_writer;
};

WordForm FormOf(const QString &path, const QString &named)
{
    const QString suffix = QFileInfo(path).suffix();
    const QString form = !named.isEmpty()   ? named
                         : suffix == u"ifo" ? u"stardict"_s
                         : suffix == u"txt" ? u"markup"_s
                                            : u"tsv"_s;
    if (const std::optional<WordForm> known = WordFormNamed(form))
        return *known;
    throw ToolError(u"the format \"%1\" is not known; there are tsv, markup and stardict"_s.arg(form));
}

std::unique_ptr<WordSink> MakeSink(const QString &path, WordForm form, int kind)
{
    if (form == WordForm::Tabbed)
        return std::make_unique<TabbedSink>(path);
    if (form == WordForm::MarkUp)
        return std::make_unique<MarkUpSink>(path, kind);
    return std::make_unique<StarDictSink>(path, kind);
}

/// Writes the forms of a kind, or tells that there are some where they are not wanted.
void WriteForms(DictionaryReader &reader, const ExportDictionaryOptions &options, Report &report, Console &console)
{
    std::optional<WrittenFile> file;
    if (!options.forms.isEmpty())
        file.emplace(options.forms);
    qsizetype done = 0;
    QByteArray line;
    reader.EachForm(options.kind, [&](const QString &form, const QString &word) {
        ++done;
        console.Progress(u"writing forms"_s, done, done, u"forms"_s);
        if (!file)
            return;
        line.resize(0);
        AppendEscapedEntry(line, form.toUtf8());
        line += '\t';
        AppendEscapedEntry(line, word.toUtf8());
        line += '\n';
        file->Write(line);
    });
    console.EndProgress();
    if (file) {
        file->Finish();
        report.Count(u"forms"_s, done);
    } else if (done > 0) {
        report.Note(u"dictionary %1"_s.arg(options.kind), u"has %1 forms, which --forms writes"_s.arg(done));
    }
}

} // namespace

std::optional<ExportDictionaryOptions> ParseExportDictionary(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Writes the words of one kind of a dictionary as lines \"word TAB entry\", in the source form of the sample\n"
        u"dictionaries, or as a StarDict dictionary. Importing what was written gives the same words and entries.\n"
        u"Forms that stand beside the list are written by --forms alone.\n"
        u"Exit codes: 0 all written, 1 some words without an entry, 2 nothing written."_s);
    parser.addOption({u"file"_s, u"The dictionary; PALIDICT.FDB beside the tool by default."_s, u"FILE"_s,
                      DefaultFile(Thing::Dictionary)});
    parser.addOption({u"kind"_s, u"The kind, 1 to 8; see \"import dictionary --help\"."_s, u"N"_s});
    parser.addOption({u"out"_s, u"What to write; of a StarDict dictionary the .ifo file."_s, u"FILE"_s});
    parser.addOption({u"format"_s,
                      u"tsv, markup or stardict; by default by the name of FILE: .ifo is stardict, .txt "
                      "markup, anything else tsv."_s,
                      u"FORM"_s});
    parser.addOption(
        {u"forms"_s, u"Where to write the forms, as lines \"form TAB word\" that the import reads."_s, u"TABLE"_s});
    Report::AddOptions(parser);
    if (ParseOrHelp(parser, u"export dictionary --kind N --out FILE [options]"_s, arguments, console))
        return std::nullopt;
    const int kind = KindNamed(parser.value(u"kind"_s));
    const QString out = parser.value(u"out"_s);
    if (out.isEmpty() || !parser.positionalArguments().isEmpty())
        throw ToolError(u"export dictionary wants --out FILE; see \"lumivara-data export dictionary --help\""_s);
    return ExportDictionaryOptions{
        parser.value(u"file"_s),  kind, out, parser.value(u"forms"_s), FormOf(out, parser.value(u"format"_s)),
        Report::OptionsOf(parser)};
}

int Run(const ExportDictionaryOptions &options, Console &console)
{
    Report report(console, options.report);
    const QString &path = options.file, &out = options.out;
    const int kind = options.kind;
    const std::unique_ptr<WordSink> sink = MakeSink(out, options.form, kind);
    const PrivateFolder scratch(UnfinishedName(QFileInfo(out).absoluteFilePath()) + u".copy"_s);
    const PrivateCopy copy(path, scratch.Path(u"copy.fdb"_s));
    UsePrivateLocks();
    DataFile file;
    qsizetype done = 0;
    OnFile(path, [&] {
        file.Open(copy.Path());
        if (!IsDictionary(file))
            throw ToolError(u"%1: is no dictionary"_s.arg(path));
        DictionaryReader reader(file);
        const qsizetype total = reader.CountWords(kind);
        if (total == 0)
            throw ToolError(u"%1: dictionary %2 has no words"_s.arg(path).arg(kind));
        reader.EachEntry(kind, [&](const QString &word, const QByteArray &content) {
            console.Progress(u"writing words"_s, ++done, total);
            if (content.isEmpty())
                report.Find(u"dictionary %1, \"%2\""_s.arg(kind).arg(word), u"has no entry; left out"_s);
            else
                sink->Add(word, content);
        });
        WriteForms(reader, options, report, console);
        file.Close();
    });
    sink->Finish();
    report.Tell(u"file"_s, QFileInfo(out).absoluteFilePath());
    report.Count(u"words"_s, done);
    return report.Finish(u"%1 written"_s.arg(out));
}
