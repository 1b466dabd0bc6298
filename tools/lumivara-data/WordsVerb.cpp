#include "lumivara-data/Verbs.h"

#include "common/Console.h"
#include "common/Report.h"
#include "dictionary/DictionaryWords.h"
#include "dictionary/FormFinder.h"
#include "lumivara-data/canon/CanonFile.h"
#include "lumivara-data/dictionary/BroughtForms.h"
#include "lumivara-data/dictionary/DictionaryFile.h"
#include "lumivara-data/dictionary/FirstSense.h"
#include "lumivara-data/dictionary/StarDictWriter.h"
#include "lumivara-data/dictionary/TextForms.h"
#include "lumivara-data/files/HtmlText.h"
#include "lumivara-data/files/PrivateCopy.h"
#include "lumivara-data/files/TextLines.h"
#include "lumivara-data/files/UnfinishedFile.h"
#include "stores/Schema.h"
#include "stores/data/FIBDataSet.h"

#include <QCache>
#include <QCommandLineParser>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

QList<int> KindsNamed(const QString &text)
{
    QList<int> kinds;
    for (const QString &name : text.split(u',')) {
        if (const int kind = KindNamed(name.trimmed()); !kinds.contains(kind))
            kinds.append(kind);
    }
    return kinds;
}

/// The words of an open dictionary as they are written there, and what they mean.
class Entries
{
public:
    explicit Entries(DataFile &file)
    {
        m_rows.SetDatabase(&file.Database());
        m_rows.SetTransaction(&file.Transaction());
        m_rows.SelectSQL() = {
            u"select E.WORD_CONTENT from SP_GET_WORD_CONTENT(:DICT_TYPE, :WORD_NAME, :MULTI_DICT) E"_s};
    }

    struct Entry
    {
        QString word, sense;
    };

    /// Of a word in lower case, which a dictionary may write with a capital.
    Entry Of(int kind, const QString &word)
    {
        const QString key = QString::number(kind) + u' ' + word;
        if (const Entry *known = m_known.object(key))
            return *known;
        Entry entry{word, {}};
        for (const QString &name : {word, word.front().toUpper() + word.mid(1)}) {
            m_rows.Close();
            m_rows.ParamByName(Field::DictType).SetAsInteger(kind);
            m_rows.ParamByName(Field::WordName).SetAsString(name);
            m_rows.ParamByName(Parameter::MultiDict).SetAsInteger(0);
            m_rows.Open();
            if (m_rows.IsEmpty())
                continue;
            entry = {name, FirstSense(m_rows.FieldByName(Field::WordContent).AsBytes())};
            break;
        }
        m_known.insert(key, new Entry(entry));
        return entry;
    }

private:
    static constexpr int MostKnown = 10'000;

    TpFIBDataSet m_rows;
    QCache<QString, Entry> m_known{MostKnown};
};

void TakeFile(const QString &path, TextForms &forms, Console &console)
{
    QFile file(path);
    OpenSource(file);
    TextLines lines(file, QFileInfo(path).fileName());
    for (QByteArray line; lines.Next(line);) {
        if (!line.isValidUtf8())
            throw ToolError(u"%1:%2: is not UTF-8"_s.arg(path).arg(lines.Number()));
        forms.Add(QString::fromUtf8(line));
        console.Progress(u"reading the text"_s, file.pos(), file.size(), u"bytes"_s);
    }
    console.EndProgress();
}

/// The page that a kind of dictionary reads.
QString PageOf(int kind)
{
    switch (kind) {
    case DictKind::PaliVietnamese:
    case DictKind::PaliEnglish:
        return Field::ContentVicPal;
    case DictKind::EnglishVietnamese:
    case DictKind::EnglishPali:
        return Field::ContentVicEng;
    default:
        return Field::ContentVicVie;
    }
}

void TakeText(const QString &path, int number, int kind, const QString &copyPath, TextForms &forms)
{
    const PrivateCopy copy(path, copyPath);
    DataFile file;
    file.Open(copy.Path());
    if (!IsCanon(file))
        throw ToolError(u"%1: no canon (tables KELORA_TREE, KELORA_CONTENT)"_s.arg(path));
    {
        TpFIBDataSet rows;
        rows.SetDatabase(&file.Database());
        rows.SetTransaction(&file.Transaction());
        rows.SelectSQL() = {u"select N.%1 from KELORA_CONTENT N where N.ID_VIC = %2"_s.arg(PageOf(kind)).arg(number)};
        rows.Open();
        if (rows.IsEmpty())
            throw ToolError(u"%1: has no text %2"_s.arg(path).arg(number));
        for (; !rows.Eof(); rows.Next())
            forms.Add(TextOfHtml(QString::fromUtf8(rows.FieldByName(PageOf(kind)).AsBytes())));
    }
    file.Close();
}

QList<FoundWord> WordsOf(const QString &form, const QList<int> &kinds, BroughtForms &brought, FormFinder &finder)
{
    QList<FoundWord> words;
    for (const int kind : kinds) {
        for (const QString &word : brought.WordsOf(kind, form))
            words.append({word, kind, form + u" → "_s + word});
    }
    return BroughtFirst(words, finder.WordsBehind(form, kinds));
}

/// A value of a line of the result.
QByteArray Cell(const QString &text)
{
    return text.simplified().toUtf8();
}

} // namespace

std::optional<WordsOptions> ParseWords(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Finds the dictionary words behind the forms of a text, such as inflected words and compounds, and writes a\n"
        u"line for each: form, count, rank, word, kind, derivation, first sense, parted by tabs. Each different form "
        u"is\n"
        u"looked up once; at most six words are given for one, the best first. A form without a word has no line.\n"
        u"Forms that a dictionary itself brings stand before those that grammar finds.\n"
        u"FILE is a text in UTF-8 or a list of forms, one a line.\n"
        u"Exit codes: 0 written, 2 nothing written."_s);
    parser.addPositionalArgument(u"FILE"_s, u"The text; none with --text."_s);
    parser.addOption({u"kind"_s,
                      u"The kinds of dictionary to look into, 1 to 8, the preferred first; see \"import "
                      "dictionary --help\"."_s,
                      u"N,N"_s});
    parser.addOption({u"out"_s, u"What to write."_s, u"FILE"_s});
    parser.addOption({u"text"_s,
                      u"A text of the canon instead of FILE, by its number, in the language of the first kind."_s,
                      u"NUMBER"_s});
    parser.addOption(
        {u"canon"_s, u"The canon; KELORA.FDB beside the tool by default."_s, u"FILE"_s, DefaultFile(Thing::Canon)});
    parser.addOption({u"dictionary"_s, u"The dictionary; PALIDICT.FDB beside the tool by default."_s, u"FILE"_s,
                      DefaultFile(Thing::Dictionary)});
    Report::AddOptions(parser);
    if (ParseOrHelp(parser, u"words FILE|--text NUMBER --kind N[,N] --out FILE [options]"_s, arguments, console))
        return std::nullopt;
    WordsOptions options;
    options.kinds = KindsNamed(parser.value(u"kind"_s));
    const QStringList files = parser.positionalArguments();
    options.out = parser.value(u"out"_s);
    if (files.size() + (parser.isSet(u"text"_s) ? 1 : 0) != 1 || options.out.isEmpty())
        throw ToolError(u"words wants one FILE or --text NUMBER, and --out FILE; see \"lumivara-data words --help\""_s);
    options.source = files.value(0);
    if (options.source.isEmpty()) {
        bool isNumber = false;
        options.text = parser.value(u"text"_s).toInt(&isNumber);
        if (!isNumber)
            throw ToolError(u"--text wants the number of a text"_s);
    }
    options.canon = parser.value(u"canon"_s);
    options.dictionary = parser.value(u"dictionary"_s);
    options.report = Report::OptionsOf(parser);
    return options;
}

int Run(const WordsOptions &options, Console &console)
{
    Report report(console, options.report);
    const PrivateFolder scratch(UnfinishedName(QFileInfo(options.out).absoluteFilePath()) + u".copy"_s);
    UsePrivateLocks();
    TextForms forms;
    if (options.source.isEmpty())
        OnFile(options.canon, [&] {
            TakeText(options.canon, options.text, options.kinds.first(), scratch.Path(u"canon.fdb"_s), forms);
        });
    else
        TakeFile(options.source, forms, console);
    WrittenFile out(options.out);
    qsizetype known = 0, knownForms = 0;
    OnFile(options.dictionary, [&] {
        const PrivateCopy copy(options.dictionary, scratch.Path(u"copy.fdb"_s));
        DataFile file;
        file.Open(copy.Path());
        if (!IsDictionary(file))
            throw ToolError(u"%1: is no dictionary"_s.arg(options.dictionary));
        {
            DictionaryWords test(file.Database(), file.Transaction());
            FormFinder finder(test);
            BroughtForms brought(file);
            Entries entries(file);
            qsizetype done = 0;
            for (const QString &form : forms.All()) {
                console.Progress(u"finding words"_s, ++done, forms.All().size(), u"forms"_s);
                const QList<FoundWord> words = WordsOf(form, options.kinds, brought, finder);
                const qsizetype count = forms.Count(form);
                known += words.isEmpty() ? 0 : count;
                knownForms += words.isEmpty() ? 0 : 1;
                for (qsizetype rank = 0; rank < words.size(); ++rank) {
                    const FoundWord &word = words[rank];
                    const Entries::Entry entry = entries.Of(word.kind, word.word);
                    const QByteArrayList cells{
                        form.toUtf8(),    QByteArray::number(count),     QByteArray::number(rank + 1),
                        Cell(entry.word), QByteArray::number(word.kind), Cell(word.derivation),
                        Cell(entry.sense)};
                    out.Write(cells.join('\t') + '\n');
                }
            }
            console.EndProgress();
        }
        file.Close();
    });
    out.Finish();
    report.Tell(u"file"_s, QFileInfo(options.out).absoluteFilePath());
    report.Count(u"words of the text"_s, forms.Total());
    report.Count(u"of them found"_s, known);
    report.Count(u"different forms"_s, forms.All().size());
    report.Count(u"forms found"_s, knownForms);
    return report.Finish(u"%1 written"_s.arg(options.out));
}
