#include "lumivara-data/Verbs.h"

#include "base/Messages.h"
#include "common/Console.h"
#include "common/Report.h"
#include "lumivara-data/dictionary/DictionaryFile.h"
#include "lumivara-data/dictionary/DictionaryReader.h"
#include "lumivara-data/dictionary/DictionaryWriter.h"
#include "lumivara-data/dictionary/EntryIntake.h"
#include "lumivara-data/dictionary/StarDictReader.h"
#include "lumivara-data/dictionary/WordLines.h"
#include "lumivara-data/files/PrivateCopy.h"
#include "lumivara-data/files/TextLines.h"
#include "lumivara-data/files/UnfinishedFile.h"
#include "stores/Schema.h"

#include <QCommandLineParser>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

using Form = WordForm;

std::optional<Form> FormNamed(const QString &name)
{
    const std::optional<Form> form = WordFormNamed(name);
    if (!form && !name.isEmpty())
        throw ToolError(Sentence({u"không biết dạng \"%1\"; có stardict, tsv và markup",
                                  u"the format \"%1\" is not known; there are stardict, tsv and markup"})
                            .arg(name));
    return form;
}

QString NameOf(Form form)
{
    return form == Form::StarDict ? u"stardict"_s : form == Form::Tabbed ? u"tsv"_s : u"markup"_s;
}

/// What it looks like.
Form FormOf(const QString &source)
{
    const QFileInfo info(source);
    if (info.isDir() || info.suffix() == u"ifo")
        return Form::StarDict;
    if (info.suffix() == u"tsv" || info.suffix() == u"tab")
        return Form::Tabbed;
    if (info.suffix() == u"txt") {
        // The source form begins with comments, its kind or a word.
        QFile file(source);
        OpenSource(file);
        TextLines lines(file, source);
        for (QByteArray line; lines.Next(line);) {
            if (line.startsWith("dictionary ") || line.startsWith("% "))
                return Form::MarkUp;
            if (line.contains('\t'))
                return Form::Tabbed;
        }
    }
    throw ToolError(Sentence({u"%1: không rõ đây là dạng nào (stardict, tsv hay markup)",
                              u"%1: which form is this? Name it by --format stardict, tsv or markup"})
                        .arg(source));
}

/// Hands over the words of the other kinds as they stand.
void TakeOver(const ImportDictionaryOptions &options, const QString &path, const QString &copyPath,
              DictionaryWriter &writer, Console &console)
{
    const PrivateCopy copy(path, copyPath);
    DataFile file;
    file.Open(copy.Path());
    if (!IsDictionary(file))
        throw ToolError(Sentence({u"%1: không phải là từ điển", u"%1: is no dictionary"}).arg(path));
    DictionaryReader reader(file);
    if (!options.replaces && !options.adds && reader.CountWords(options.kind) > 0)
        throw ToolError(
            Sentence(
                {u"%1: từ điển %2 đã có từ; --replace thay chúng, --add thêm bên cạnh",
                 u"%1: dictionary %2 has words already; --replace puts the new ones in their place, --add beside them"})
                .arg(path)
                .arg(options.kind));
    for (const int kind : DictKind::All) {
        if (kind == options.kind && !options.adds)
            continue;
        const qsizetype total = reader.CountWords(kind);
        qsizetype done = 0;
        reader.EachEntry(kind, [&](const QString &word, const QByteArray &content) {
            console.Progress(u"keeping dictionary %1"_s.arg(kind), ++done, total);
            if (!content.isEmpty() && !word.isEmpty())
                writer.AddWord(kind, word, writer.AddEntry(content));
        });
        console.EndProgress();
    }
    file.Close();
}

void TakeText(const QString &source, Form form, EntryIntake &intake, Console &console)
{
    QFile file(source);
    OpenSource(file);
    const auto progress = [&] { console.Progress(u"reading the source"_s, file.pos(), file.size(), u"bytes"_s); };
    const QString name = QFileInfo(source).fileName();
    if (form == Form::Tabbed)
        TakeTabbedWords(file, name, intake, progress);
    else
        TakeMarkUpWords(file, name, intake, progress);
    console.EndProgress();
}

void Prove(const QString &source)
{
    QFile file(source);
    OpenSource(file);
}

/// So that what was read is the sum of all else.
void Count(const EntryIntake &intake, const DictionaryWriter &writer, Report &report)
{
    const qsizetype imported = writer.WordCount(intake.Kind());
    const qsizetype again = intake.TakenCount() - imported, leftOut = intake.ReadCount() - intake.TakenCount();
    report.Count(Sentence({u"từ đã đọc", u"words read"}), intake.ReadCount());
    report.Count(Sentence({u"từ được nhập", u"words imported"}), imported);
    report.Count(Sentence({u"được gộp vào cùng một từ", u"joined to the same word"}),
                 again - writer.EqualCount() - writer.UnjoinedCount());
    report.Count(Sentence({u"có mục từ giống hệt", u"with an equal entry"}), writer.EqualCount());
    report.Count(Sentence({u"bị bỏ", u"left out"}), leftOut + writer.UnjoinedCount());
}

} // namespace

std::optional<WordForm> WordFormNamed(const QString &name)
{
    if (name == u"stardict")
        return WordForm::StarDict;
    if (name == u"tsv")
        return WordForm::Tabbed;
    if (name == u"markup")
        return WordForm::MarkUp;
    return std::nullopt;
}

int KindNamed(const QString &text)
{
    const int kind = text.toInt();
    if (!IsOneOf(DictKind::All, kind))
        throw ToolError(
            Sentence({u"--kind cần một số từ 1 đến 8, xem --help", u"--kind wants a number from 1 to 8, see --help"}));
    return kind;
}

std::optional<ImportDictionaryOptions> ParseImportDictionary(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Puts the words of SOURCE into a dictionary file as one of its kinds and keeps the other kinds as they are.\n"
        u"Kinds: 1 English-Vietnamese, 2 Vietnamese-English, 3 French-Vietnamese, 4 Vietnamese-French,\n"
        u"5 Pāli-Vietnamese, 6 Vietnamese-Pāli, 7 English-Pāli, 8 Pāli-English.\n"
        u"SOURCE is a StarDict dictionary (its .ifo file or folder), a text of lines \"word TAB entry\", or the "
        u"source\n"
        u"form of the sample dictionaries. The file is replaced whole or not at all.\n"
        u"Exit codes: 0 all taken, 1 some words left out, 2 nothing changed."_s);
    parser.addPositionalArgument(u"SOURCE"_s, u"The words."_s);
    parser.addOption({u"kind"_s, u"The kind, 1 to 8."_s, u"N"_s});
    parser.addOption({u"into"_s,
                      u"The dictionary file, made if it is missing; PALIDICT.FDB beside the tool by default."_s,
                      u"FILE"_s, DefaultFile(Thing::Dictionary)});
    parser.addOption({u"format"_s, u"stardict, tsv or markup; by default what the name of SOURCE tells."_s, u"FORM"_s});
    parser.addOption({u"replace"_s, u"The words that FILE has of this kind go."_s});
    parser.addOption({u"add"_s, u"The words that FILE has of this kind stay; entries of one word are joined."_s});
    AddMannerOptions(parser);
    Report::AddOptions(parser);
    if (ParseOrHelp(parser, u"import dictionary SOURCE --kind N [options]"_s, arguments, console))
        return std::nullopt;
    const QStringList sources = parser.positionalArguments();
    if (parser.isSet(u"add"_s) && parser.isSet(u"replace"_s))
        throw ToolError(
            Sentence({u"--add và --replace là hai việc khác nhau", u"--add and --replace are two different things"}));
    if (sources.size() != 1)
        throw ToolError(
            Sentence({u"import dictionary cần một SOURCE; xem \"lumivara-data import dictionary --help\"",
                      u"import dictionary wants one SOURCE; see \"lumivara-data import dictionary --help\""}));
    return ImportDictionaryOptions{sources.first(),
                                   KindNamed(parser.value(u"kind"_s)),
                                   parser.value(u"into"_s),
                                   FormNamed(parser.value(u"format"_s)),
                                   parser.isSet(u"replace"_s),
                                   parser.isSet(u"add"_s),
                                   MannerOf(parser),
                                   Report::OptionsOf(parser)};
}

int Run(const ImportDictionaryOptions &options, Console &console)
{
    Follow(options.manner, console);
    const QString &source = options.source;
    const int kind = options.kind;
    if (!QFileInfo::exists(source))
        throw ToolError(Sentence({u"%1: không có tệp này", u"%1: there is no such file"}).arg(source));
    const Form form = options.form ? *options.form : FormOf(source);
    Report report(console, options.report);
    const QString path = QFileInfo(options.into).absoluteFilePath();
    // Before the words that are there are copied.
    std::optional<StarDictReader> starDict;
    if (form == Form::StarDict)
        starDict.emplace(source, report).Open();
    else
        Prove(source);
    FileInTheMaking target(path);
    TellSource(source, NameOf(form), report);
    UsePrivateLocks();
    DictionaryWriter writer(target.Path());
    if (QFileInfo::exists(path))
        OnFile(path, [&] { TakeOver(options, path, target.Path() + u".copy"_s, writer, console); });
    const qsizetype kept = writer.WordCount();
    EntryIntake intake(kind, writer, report);
    if (starDict)
        starDict->TakeAll(intake, console);
    else
        TakeText(source, form, intake, console);
    if (writer.WordCount() == kept)
        throw ToolError(Sentence({u"%1: không nhập được từ nào", u"%1: no word of it could be taken"}).arg(source));
    writer.Finish(console, &report);
    target.Finish();
    report.Tell(u"file"_s, path);
    Count(intake, writer, report);
    report.Count(Sentence({u"từ đang có được giữ lại", u"words kept"}), kept);
    return report.Finish(Sentence({u"từ điển %1 của %2 là mới", u"dictionary %1 of %2 is new"}).arg(kind).arg(path));
}
