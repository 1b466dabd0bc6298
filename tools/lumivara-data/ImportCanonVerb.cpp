#include "lumivara-data/Verbs.h"

#include "base/Messages.h"
#include "common/Console.h"
#include "common/Report.h"
#include "lumivara-data/canon/CanonAddition.h"
#include "lumivara-data/canon/CanonBefore.h"
#include "lumivara-data/canon/CanonCopy.h"
#include "lumivara-data/canon/CanonFolderReader.h"
#include "lumivara-data/canon/ClientList.h"
#include "lumivara-data/canon/NamesTable.h"
#include "lumivara-data/canon/Renumbering.h"
#include "lumivara-data/canon/SegmentedCanon.h"
#include "lumivara-data/files/PrivateFolder.h"
#include "stores/engine/DatabaseError.h"

#include <QCommandLineParser>
#include <QFileInfo>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

using Form = CanonForm;

std::optional<Form> FormNamed(const QString &format)
{
    const QString wanted = format.toLower();
    if (wanted == "segmented"_L1)
        return Form::Segmented;
    if (wanted == "folder"_L1)
        return Form::Folder;
    if (wanted == "copy"_L1)
        return Form::Copy;
    if (!wanted.isEmpty())
        throw ToolError(Sentence({u"không có dạng \"%1\": segmented, folder hay copy",
                                  u"there is no format \"%1\": segmented, folder or copy"})
                            .arg(format));
    return std::nullopt;
}

QString NameOf(Form form)
{
    return form == Form::Segmented ? u"segmented"_s : form == Form::Folder ? u"folder"_s : u"copy"_s;
}

/// What it looks like.
Form FormOf(const QString &source)
{
    if (!QFileInfo(source).isDir())
        return Form::Copy;
    // An export may hold the same texts in both forms, and its table gives them back exactly.
    const SourceFolder folder(source);
    return SegmentedCanon::IsOne(folder) && !CanonFolderReader::HasTable(folder) ? Form::Segmented : Form::Folder;
}

void Refuse(const ImportCanonOptions &options, Form form)
{
    const std::tuple<QString, bool, QList<Form>> belongs[] = {
        {u"table"_s, !options.table.isEmpty(), {Form::Folder}},
        {u"author"_s, !options.authors.isEmpty(), {Form::Segmented}},
        {u"names"_s, !options.names.isEmpty(), {Form::Segmented, Form::Folder}},
        {u"renumber"_s, options.renumbers, {Form::Segmented, Form::Folder}},
        {u"repair"_s, options.isMended, {Form::Copy}}};
    for (const auto &[option, isSet, owners] : belongs) {
        if (!owners.contains(form) && isSet)
            throw ToolError(
                Sentence({u"--%1 không có nghĩa với nguồn này", u"--%1 has no meaning for this SOURCE"}).arg(option));
    }
}

/// What the list of texts and the marks get.
ClientList::Renewal RenewalFor(const ImportCanonOptions &options, const CheckedCanon &canon)
{
    ClientList::Renewal renewal;
    renewal.texts = ClientList::TextsOf(canon);
    renewal.keepsNames = options.keepsNames;
    for (const KeloraText &text : std::as_const(renewal.texts))
        renewal.traits.append({text.number, {}, {text.pali, text.vietnamese, text.english}});
    return renewal;
}

void RenewList(const ImportCanonOptions &options, const ClientList::Renewal &renewal, Report &report)
{
    try {
        ClientList::Tell(ClientList::Renew(options.client, renewal), report);
    } catch (const std::exception &error) {
        throw ToolError(Sentence({u"%1 đã được tạo, nhưng không thêm được bài vào %2: %3",
                                  u"%1 is made, but texts can't be added to %2: %3"})
                            .arg(options.into, options.client, QString::fromUtf8(error.what())));
    }
}

QString FullPath(const QString &path)
{
    return QFileInfo(path).absoluteFilePath();
}

/// Puts the new canon in its place, with marks and list in step.
void Renumber(const ImportCanonOptions &options, CanonWriter &writer, const TextKeys &keys, Report &report)
{
    Renumbering renumbering(options.into);
    writer.Finish(report, renumbering.NextPath());
    ClientList::Renewal renewal = RenewalFor(options, writer.Rows());
    renewal.traits = writer.Traits();
    renewal.endsMoved = true;
    renumbering.Run({FullPath(options.client), options.keepsNames, keys.Moved()},
                    [&](const Renumbering::Journal &journal) {
                        renewal.moved = journal.keys;
                        ClientList::Tell(ClientList::Renew(journal.marks, renewal), report);
                    });
    report.Note(options.into,
                Sentence({u"mọi bài có khóa mới; các tệp trước đó được giữ lại là %1.before và %2.before",
                          u"all texts have new keys; the files before are kept as %1.before and %2.before"})
                    .arg(QFileInfo(options.into).fileName(), QFileInfo(options.client).fileName()));
}

/// Brings what a killed run has left of a renumbering to its end, or takes it back. True if there are new keys now.
bool EndRenumbering(const ImportCanonOptions &options, Report &report, Console &console)
{
    Renumbering renumbering(options.into);
    if (!renumbering.IsUnfinished())
        return false;
    const FileInTheMaking lock(options.into);
    const auto journal = renumbering.Found();
    if (!journal) {
        renumbering.TakeBack();
        report.Note(options.into, Sentence({u"một lần --renumber bị ngắt chưa thay đổi gì và đã được hủy",
                                            u"an interrupted --renumber had changed nothing yet and was taken back"}));
        return false;
    }
    if (options.client.isEmpty() || FullPath(options.client) != journal->marks) {
        throw ToolError(
            Sentence({u"%1: một lần --renumber bị ngắt phải được làm xong trước; hãy gọi với --client %2",
                      u"%1: an interrupted --renumber has to come to its end first; call this with --client %2"})
                .arg(options.into, journal->marks));
    }
    const bool isWaiting = QFileInfo::exists(renumbering.NextPath());
    renumbering.GoOn(*journal, [&](const Renumbering::Journal &found) {
        ClientList::Renewal renewal;
        renewal.texts = ClientList::TextsOf(isWaiting ? renumbering.NextPath() : FullPath(options.into), console);
        renewal.moved = found.keys;
        renewal.endsMoved = true;
        renewal.keepsNames = found.keepsNames;
        ClientList::Tell(ClientList::Renew(found.marks, renewal), report);
    });
    report.Note(options.into, Sentence({u"một lần --renumber bị ngắt đã được làm xong",
                                        u"an interrupted --renumber was brought to its end"}));
    return true;
}

/// Puts the texts beside those that are there; `make` makes a canon of them at a path, and says whether it could. False
/// if nothing was made.
bool Add(const ImportCanonOptions &options, const std::function<bool(const QString &)> &make, Report &report,
         Console &console)
{
    CanonAddition addition(options.into);
    if (!options.client.isEmpty()) {
        for (const int number : ClientList::Numbers(options.client))
            addition.Reserve(number);
    }
    if (!make(addition.SourcePath()))
        return false;
    addition.Run(report, console);
    if (options.client.isEmpty())
        return true;
    ClientList::Renewal renewal = RenewalFor(options, addition.Rows());
    renewal.traits.clear(); // no text has another key than before, so all marks stay
    RenewList(options, renewal, report);
    return true;
}

/// `choice` is what one of the two forms lets the user choose: its table, or its authors.
template <typename Source, typename Choice>
void ImportFrom(const ImportCanonOptions &options, const Choice &choice, bool renumbers, Report &report,
                Console &console)
{
    NamesTable names = options.names.isEmpty() ? NamesTable() : NamesTable(options.names, report);
    const SourceFolder folder(options.source);
    Source canon(folder, choice, report);
    const auto write = [&](CanonWriter &writer, TextKeys &keys) {
        canon.WriteTo(writer, keys, names, console);
        // An empty tree in the place of texts would be a loss.
        if (writer.Rows().texts.isEmpty())
            throw ToolError(
                Sentence({u"%1: không nhập được bài nào", u"%1: no text of it could be taken"}).arg(options.source));
    };
    if (options.adds) {
        const auto make = [&](const QString &path) {
            const auto writer = CanonWriter::Aside(path);
            TextKeys keys([] { return QList<TextTraits>(); });
            write(*writer, keys);
            writer->Close();
            names.TellUnused(report);
            return true;
        };
        Add(options, make, report, console);
        return;
    }
    CanonWriter writer(options.into);
    TextKeys keys([&] { return TextsBefore(options.into, report, console); }, renumbers);
    if (!options.client.isEmpty()) {
        for (const int number : ClientList::Numbers(options.client))
            keys.Reserve(number);
    }
    write(writer, keys);
    const QHash<qsizetype, int> recognised = keys.Recognise(writer.Traits());
    for (auto text = recognised.cbegin(); text != recognised.cend(); ++text)
        writer.Rekey(text.key(), *text);
    writer.Keep(keys.Gone());
    names.TellUnused(report);
    keys.Tell(options.into, report);
    if (renumbers && !keys.Moved().isEmpty())
        return Renumber(options, writer, keys, report);
    writer.Finish(report);
    if (options.client.isEmpty())
        return;
    ClientList::Renewal renewal = RenewalFor(options, writer.Rows());
    renewal.traits = writer.Traits();
    renewal.moved = keys.Moved();
    RenewList(options, renewal, report);
}

/// False if nothing was made.
bool Copy(const ImportCanonOptions &options, Report &report, Console &console)
{
    if (options.adds) {
        const auto make = [&](const QString &path) {
            return CopyCanonAside(options.source, path, options.isMended, report, console).has_value();
        };
        return Add(options, make, report, console);
    }
    const auto canon = CopyCanon(options.source, options.into, options.isMended, report, console);
    if (canon && !options.client.isEmpty())
        RenewList(options, RenewalFor(options, *canon), report);
    return canon.has_value();
}

} // namespace

std::optional<ImportCanonOptions> ParseImportCanon(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Makes a canon, such as KELORA.FDB, out of texts in open formats:\n"
        u"  segmented  root/, translation/LANGUAGE/AUTHOR/ and html/ with one JSON object a text, segment id to text\n"
        u"  folder     HTML, plain text or Markdown files with a table canon.csv or canon.json of groups and texts\n"
        u"  copy       another KELORA.FDB, copied after a check\n"
        u"A text that FILE has already keeps its key, and with it its marks; new texts get keys in between.\n"
        u"The program may have the old FILE open; it goes on with that until its next start.\n"
        u"Exit codes: 0 everything taken, 1 something was not taken, 2 nothing made."_s);
    parser.addPositionalArgument(u"SOURCE"_s, u"A folder or a file."_s);
    parser.addOption({u"into"_s, u"The file to make, over one that exists."_s, u"FILE"_s});
    parser.addOption({u"format"_s, u"segmented, folder or copy; by what SOURCE is by default."_s, u"FORMAT"_s});
    parser.addOption({u"table"_s, u"folder: the table, if it stands elsewhere."_s, u"FILE"_s});
    parser.addOption({u"author"_s, u"segmented: prefers this translator; may be given more than once."_s, u"NAME"_s});
    parser.addOption({u"names"_s,
                      u"segmented, folder: a table (CSV) of names with the columns id, pali, vietnamese, english; they "
                      u"come before the texts' own titles."_s,
                      u"FILE"_s});
    parser.addOption({u"client"_s,
                      u"Adds the texts that are missing in the list of this file of marks, such as "
                      u"TARUNECLIENT.FDB, and renews names there that differ: a mark on a text that the list lacks is "
                      u"not shown. Marks on a text that has another key now go with it."_s,
                      u"FILE"_s});
    parser.addOption({u"keep-names"_s, u"Leaves the names in that list."_s});
    parser.addOption({u"renumber"_s,
                      u"segmented, folder: gives all texts of FILE new keys in reading order, and moves the marks of "
                      u"--client to them. The files before stay as FILE.before. Close the program first."_s});
    parser.addOption(
        {u"add"_s,
         u"The texts that FILE has stay; those that SOURCE has too are renewed, and the others come beside them."_s});
    parser.addOption({u"repair"_s, u"copy: mends in the copy what can be mended without loss."_s});
    AddMannerOptions(parser);
    Report::AddOptions(parser);
    if (ParseOrHelp(parser, u"import canon SOURCE --into FILE [options]"_s, arguments, console))
        return std::nullopt;
    if (parser.positionalArguments().size() != 1 || !parser.isSet(u"into"_s))
        throw ToolError(
            Sentence({u"import canon cần một SOURCE và --into FILE; xem \"lumivara-data import canon --help\"",
                      u"import canon wants one SOURCE and --into FILE; see \"lumivara-data import canon --help\""}));
    const bool hasClient = parser.isSet(u"client"_s);
    if (!hasClient && parser.isSet(u"renumber"_s))
        throw ToolError(Sentence({u"--renumber cần --client FILE: các ghi chép cũng phải có khóa mới",
                                  u"--renumber wants --client FILE: the marks have to get the new keys too"}));
    if (parser.isSet(u"add"_s) && parser.isSet(u"renumber"_s))
        throw ToolError(
            Sentence({u"--add và --renumber là hai việc khác nhau", u"--add and --renumber are two different things"}));
    if (!hasClient && parser.isSet(u"keep-names"_s))
        throw ToolError(Sentence({u"--keep-names không có nghĩa nếu không có --client FILE",
                                  u"--keep-names has no meaning without --client FILE"}));
    return ImportCanonOptions{parser.positionalArguments().first(),
                              parser.value(u"into"_s),
                              FormNamed(parser.value(u"format"_s)),
                              parser.value(u"table"_s),
                              parser.values(u"author"_s),
                              parser.value(u"names"_s),
                              parser.value(u"client"_s),
                              parser.isSet(u"keep-names"_s),
                              parser.isSet(u"renumber"_s),
                              parser.isSet(u"repair"_s),
                              parser.isSet(u"add"_s),
                              MannerOf(parser),
                              Report::OptionsOf(parser)};
}

int Run(const ImportCanonOptions &given, Console &console)
{
    ImportCanonOptions options = given;
    Follow(options.manner, console);
    const bool isTrial = options.manner.isTrial;
    options.adds = options.adds && QFileInfo::exists(options.into);
    if (isTrial) {
        options.client.clear(); // what lies beside stays, too
        options.renumbers = false;
    }
    Report report(console, options.report);
    if (!QFileInfo::exists(options.source))
        throw ToolError(Sentence({u"%1: không có tệp hay thư mục này", u"%1: there is no such file or folder"})
                            .arg(options.source));
    const Form form = options.form ? *options.form : FormOf(options.source);
    Refuse(options, form);
    TellSource(options.source, NameOf(form), report);
    // The marks are a live file, which has its own.
    if (options.client.isEmpty())
        UsePrivateLocks();
    else
        ClientList::Prepare(options.client, console);

    // What was interrupted gave new keys already.
    const bool renumbers = !isTrial && !EndRenumbering(options, report, console) && options.renumbers;
    bool isMade = true;
    if (form == Form::Copy)
        isMade = Copy(options, report, console);
    else if (form == Form::Folder)
        ImportFrom<CanonFolderReader>(options, options.table, renumbers, report, console);
    else
        ImportFrom<SegmentedCanon>(options, options.authors, renumbers, report, console);
    if (isMade && !isTrial)
        RememberMade(options.into);
    if (isMade)
        report.Tell(u"file"_s, FullPath(options.into));
    return report.Finish(isMade ? QString() : Sentence({u"không có gì được ghi", u"nothing was written"}));
}
