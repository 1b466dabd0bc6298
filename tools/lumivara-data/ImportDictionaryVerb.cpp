#include "lumivara-data/Verbs.h"

#include "base/Messages.h"
#include "common/Console.h"
#include "common/Report.h"
#include "lumivara-data/dictionary/BroughtForms.h"
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

FormPlace FormPlaceNamed(const QString &name)
{
    if (name == u"list")
        return FormPlace::List;
    if (name == u"forms")
        return FormPlace::Beside;
    if (!name.isEmpty())
        throw ToolError(
            Sentence({u"--syn là list hoặc forms, không phải \"%1\"", u"--syn is list or forms, not \"%1\""})
                .arg(name));
    return FormPlace::Fitting;
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

/// Hands over the forms that stay.
void TakeFormsOver(const ImportDictionaryOptions &options, const QString &path, DictionaryReader &reader,
                   DictionaryWriter &writer, Console &console)
{
    const bool replaces = options.source.isEmpty() ? options.replaces : !options.adds;
    qsizetype done = 0;
    for (const int kind : DictKind::All) {
        if (kind == options.kind && replaces)
            continue;
        reader.EachForm(kind, [&](const QString &form, const QString &word) {
            if (kind == options.kind && !options.adds)
                throw ToolError(Sentence({u"%1: từ điển %2 đã có dạng từ; --replace thay chúng, --add thêm bên cạnh",
                                          u"%1: dictionary %2 has forms already; --replace puts the new ones in their "
                                          u"place, --add beside them"})
                                    .arg(path)
                                    .arg(kind));
            writer.AddForm(kind, form, word);
            ++done;
            console.Progress(u"keeping forms"_s, done, done, u"forms"_s);
        });
    }
    console.EndProgress();
}

/// Hands over the words of the other kinds as they stand, those of this kind where they stay, and the forms.
void TakeOver(const ImportDictionaryOptions &options, const QString &path, const QString &copyPath,
              DictionaryWriter &writer, Report &report, Console &console)
{
    const PrivateCopy copy(path, copyPath);
    DataFile file;
    file.Open(copy.Path());
    if (!IsDictionary(file))
        throw ToolError(Sentence({u"%1: không phải là từ điển", u"%1: is no dictionary"}).arg(path));
    DictionaryReader reader(file);
    const bool keepsWords = options.adds || options.source.isEmpty();
    if (!options.replaces && !keepsWords && reader.CountWords(options.kind) > 0)
        throw ToolError(
            Sentence(
                {u"%1: từ điển %2 đã có từ; --replace thay chúng, --add thêm bên cạnh",
                 u"%1: dictionary %2 has words already; --replace puts the new ones in their place, --add beside them"})
                .arg(path)
                .arg(options.kind));
    for (const int kind : DictKind::All) {
        if (kind == options.kind && !keepsWords)
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
    TakeFormsOver(options, path, reader, writer, console);
    if (!reader.HasForms() && BroughtForms::AreIn(file))
        report.Find(path, Sentence({u"không liệt kê được các dạng từ của tệp; bị bỏ",
                                    u"its forms cannot be listed; left out"}));
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

void TakeForms(const QString &path, EntryIntake &intake, Console &console)
{
    QFile file(path);
    OpenSource(file);
    TakeTabbedForms(file, QFileInfo(path).fileName(), intake,
                    [&] { console.Progress(u"reading the forms"_s, file.pos(), file.size(), u"bytes"_s); });
    console.EndProgress();
}

void Prove(const QString &source)
{
    QFile file(source);
    OpenSource(file);
}

/// So that what was read is the sum of all else. `kept` words of the kind were there.
void Count(const EntryIntake &intake, const DictionaryWriter &writer, qsizetype kept, Report &report)
{
    const qsizetype imported = writer.WordCount(intake.Kind()) - kept;
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
        u"Forms are what texts have in place of words. They stand beside the list; a look-up that meets one gives its\n"
        u"words. With --forms and without SOURCE, the words of this kind stay.\n"
        u"Exit codes: 0 all taken, 1 some words left out, 2 nothing changed."_s);
    parser.addPositionalArgument(u"SOURCE"_s, u"The words; none where only forms are brought."_s);
    parser.addOption({u"kind"_s, u"The kind, 1 to 8."_s, u"N"_s});
    parser.addOption({u"into"_s,
                      u"The dictionary file, made if it is missing; PALIDICT.FDB beside the tool by default."_s,
                      u"FILE"_s, DefaultFile(Thing::Dictionary)});
    parser.addOption({u"format"_s, u"stardict, tsv or markup; by default what the name of SOURCE tells."_s, u"FORM"_s});
    parser.addOption({u"forms"_s,
                      u"Forms of the words: lines \"form TAB word\" in UTF-8, the word as the list has it. A form with "
                      "several words has a line for each, the best first."_s,
                      u"TABLE"_s});
    parser.addOption({u"syn"_s,
                      u"Whether the forms of a StarDict dictionary become words of the list (list) or forms beside it "
                      "(forms); by default forms, if there are more of them than words."_s,
                      u"PLACE"_s});
    parser.addOption({u"replace"_s, u"The words that FILE has of this kind go, and their forms."_s});
    parser.addOption({u"add"_s, u"The words that FILE has of this kind stay; entries of one word are joined."_s});
    AddMannerOptions(parser);
    Report::AddOptions(parser);
    if (ParseOrHelp(parser, u"import dictionary [SOURCE] --kind N [options]"_s, arguments, console))
        return std::nullopt;
    const QStringList sources = parser.positionalArguments();
    if (parser.isSet(u"add"_s) && parser.isSet(u"replace"_s))
        throw ToolError(
            Sentence({u"--add và --replace là hai việc khác nhau", u"--add and --replace are two different things"}));
    const QString forms = parser.value(u"forms"_s);
    if (sources.size() > 1 || (sources.isEmpty() && forms.isEmpty()))
        throw ToolError(
            Sentence({u"import dictionary cần một SOURCE; xem \"lumivara-data import dictionary --help\"",
                      u"import dictionary wants one SOURCE; see \"lumivara-data import dictionary --help\""}));
    return ImportDictionaryOptions{sources.value(0),
                                   forms,
                                   FormPlaceNamed(parser.value(u"syn"_s)),
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
    const QString &source = options.source, &forms = options.forms;
    const int kind = options.kind;
    for (const QString &given : {source, forms}) {
        if (!given.isEmpty() && !QFileInfo::exists(given))
            throw ToolError(Sentence({u"%1: không có tệp này", u"%1: there is no such file"}).arg(given));
    }
    const bool hasWords = !source.isEmpty();
    const QString path = QFileInfo(options.into).absoluteFilePath();
    if (!hasWords && !QFileInfo::exists(path))
        throw ToolError(Sentence({u"%1: không có tệp này, nên không có từ nào cho các dạng từ",
                                  u"%1: there is no such file, and so no word that the forms are of"})
                            .arg(path));
    const std::optional<Form> form = hasWords && !options.form ? FormOf(source) : options.form;
    Report report(console, options.report);
    // Before the words that are there are copied.
    std::optional<StarDictReader> starDict;
    if (hasWords && form == Form::StarDict)
        starDict.emplace(source, report).Open();
    else if (hasWords)
        Prove(source);
    if (!forms.isEmpty())
        Prove(forms);
    FileInTheMaking target(path);
    if (hasWords)
        TellSource(source, NameOf(*form), report);
    else
        TellSource(forms, u"forms"_s, report);
    UsePrivateLocks();
    DictionaryWriter writer(target.Path());
    if (QFileInfo::exists(path))
        OnFile(path, [&] { TakeOver(options, path, target.Path() + u".copy"_s, writer, report, console); });
    const qsizetype kept = writer.WordCount(), keptForms = writer.FormCount(), keptOfKind = writer.AddedCount(kind);
    EntryIntake intake(kind, writer, report);
    if (starDict)
        starDict->TakeAll(intake, console, options.formPlace);
    else if (hasWords)
        TakeText(source, *form, intake, console);
    if (hasWords && writer.WordCount() == kept)
        throw ToolError(Sentence({u"%1: không nhập được từ nào", u"%1: no word of it could be taken"}).arg(source));
    if (!forms.isEmpty())
        TakeForms(forms, intake, console);
    if (!hasWords && writer.FormCount() == keptForms)
        throw ToolError(Sentence({u"%1: không nhập được dạng từ nào", u"%1: no form of it could be taken"}).arg(forms));
    writer.Finish(console, &report);
    target.Finish();
    report.Tell(u"file"_s, path);
    if (hasWords)
        Count(intake, writer, keptOfKind, report);
    report.Count(Sentence({u"từ đang có được giữ lại", u"words kept"}), kept);
    if (intake.FormsReadCount() > 0) {
        report.Count(Sentence({u"dạng từ đã đọc", u"forms read"}), intake.FormsReadCount());
        report.Count(Sentence({u"dạng từ của từ điển", u"forms of the dictionary"}), writer.FormCount(kind));
    }
    return report.Finish(Sentence({u"từ điển %1 của %2 là mới", u"dictionary %1 of %2 is new"}).arg(kind).arg(path));
}
