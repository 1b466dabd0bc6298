#include "lumivara-data/Verbs.h"

#include "common/Console.h"
#include "common/Report.h"
#include "lumivara-data/canon/CanonCopy.h"
#include "lumivara-data/canon/CanonFolderReader.h"
#include "lumivara-data/canon/ClientList.h"
#include "lumivara-data/canon/SegmentedCanon.h"
#include "lumivara-data/files/PrivateFolder.h"
#include "stores/engine/DatabaseError.h"

#include <QCommandLineParser>
#include <QFileInfo>

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
        throw ToolError(u"there is no format \"%1\": segmented, folder or copy"_s.arg(format));
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
    const std::tuple<QString, bool, Form> belongs[] = {{u"table"_s, !options.table.isEmpty(), Form::Folder},
                                                       {u"author"_s, !options.authors.isEmpty(), Form::Segmented},
                                                       {u"repair"_s, options.isMended, Form::Copy}};
    for (const auto &[option, isSet, owner] : belongs) {
        if (owner != form && isSet)
            throw ToolError(u"--%1 has no meaning for this SOURCE"_s.arg(option));
    }
}

/// `choice` is what one of the two forms lets the user choose: its table, or its authors.
template <typename Source, typename Choice>
CheckedCanon ImportFrom(const QString &source, const QString &target, const Choice &choice, Report &report,
                        Console &console)
{
    const SourceFolder folder(source);
    Source canon(folder, choice, report);
    CanonWriter writer(target);
    canon.WriteTo(writer, console);
    // An empty tree in the place of texts would be a loss.
    if (writer.Rows().texts.isEmpty())
        throw ToolError(u"%1: no text of it could be taken"_s.arg(source));
    writer.Finish(report);
    return writer.Rows();
}

void AddToList(const QString &client, const CheckedCanon &canon, const QString &target, Report &report)
{
    try {
        report.Count(u"texts added to the list"_s, ClientList::AddMissing(client, canon));
    } catch (const std::exception &error) {
        throw ToolError(
            u"%1 is made, but texts can't be added to %2: %3"_s.arg(target, client, QString::fromUtf8(error.what())));
    }
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
        u"The program may have the old FILE open; it goes on with that until its next start.\n"
        u"Exit codes: 0 everything taken, 1 something was not taken, 2 nothing made."_s);
    parser.addPositionalArgument(u"SOURCE"_s, u"A folder or a file."_s);
    parser.addOption({u"into"_s, u"The file to make, over one that exists."_s, u"FILE"_s});
    parser.addOption({u"format"_s, u"segmented, folder or copy; by what SOURCE is by default."_s, u"FORMAT"_s});
    parser.addOption({u"table"_s, u"folder: the table, if it stands elsewhere."_s, u"FILE"_s});
    parser.addOption({u"author"_s, u"segmented: prefers this translator; may be given more than once."_s, u"NAME"_s});
    parser.addOption({u"client"_s,
                      u"Adds the texts that are missing in the list of this file of marks, such as "
                      u"TARUNECLIENT.FDB: a mark on a text that the list lacks is not shown."_s,
                      u"FILE"_s});
    parser.addOption({u"repair"_s, u"copy: mends in the copy what can be mended without loss."_s});
    AddMannerOptions(parser);
    Report::AddOptions(parser);
    if (ParseOrHelp(parser, u"import canon SOURCE --into FILE [options]"_s, arguments, console))
        return std::nullopt;
    if (parser.positionalArguments().size() != 1 || !parser.isSet(u"into"_s))
        throw ToolError(u"import canon wants one SOURCE and --into FILE; see \"lumivara-data import canon --help\""_s);
    return ImportCanonOptions{parser.positionalArguments().first(),
                              parser.value(u"into"_s),
                              FormNamed(parser.value(u"format"_s)),
                              parser.value(u"table"_s),
                              parser.values(u"author"_s),
                              parser.value(u"client"_s),
                              parser.isSet(u"repair"_s),
                              MannerOf(parser),
                              Report::OptionsOf(parser)};
}

int Run(const ImportCanonOptions &options, Console &console)
{
    Report report(console, options.report);
    const QString &source = options.source, &target = options.into, &client = options.client;
    if (!QFileInfo::exists(source))
        throw ToolError(u"%1: there is no such file or folder"_s.arg(source));
    const Form form = options.form ? *options.form : FormOf(source);
    Refuse(options, form);
    Follow(options.manner, console);
    TellSource(source, NameOf(form), report);
    // The marks are a live file, which has its own.
    if (client.isEmpty())
        UsePrivateLocks();
    else
        ClientList::Prepare(client, console);

    std::optional<CheckedCanon> canon;
    if (form == Form::Copy)
        canon = CopyCanon(source, target, options.isMended, report, console);
    else if (form == Form::Folder)
        canon = ImportFrom<CanonFolderReader>(source, target, options.table, report, console);
    else
        canon = ImportFrom<SegmentedCanon>(source, target, options.authors, report, console);
    if (canon && !client.isEmpty() && !options.manner.isTrial)
        AddToList(client, *canon, target, report);
    if (canon)
        report.Tell(u"file"_s, QFileInfo(target).absoluteFilePath());
    return report.Finish(canon ? QString() : u"nothing was written"_s);
}
