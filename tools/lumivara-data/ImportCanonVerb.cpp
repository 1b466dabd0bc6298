#include "lumivara-data/Verbs.h"

#include "common/Console.h"
#include "common/Report.h"
#include "lumivara-data/canon/CanonCopy.h"
#include "lumivara-data/canon/CanonFolderReader.h"
#include "lumivara-data/canon/ClientList.h"
#include "lumivara-data/canon/SegmentedCanon.h"
#include "stores/engine/DatabaseError.h"

#include <QCommandLineParser>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

enum class Form { Segmented, Folder, Copy };

/// What the user says it is, else what it looks like.
Form FormOf(const QString &source, const QString &format)
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
    if (!QFileInfo(source).isDir())
        return Form::Copy;
    // An export may hold the same texts in both forms, and its table gives them back exactly.
    const SourceFolder folder(source);
    return SegmentedCanon::IsOne(folder) && !CanonFolderReader::HasTable(folder) ? Form::Segmented : Form::Folder;
}

void Refuse(const QCommandLineParser &parser, Form form)
{
    const std::pair<const char16_t *, Form> belongs[] = {
        {u"table", Form::Folder}, {u"author", Form::Segmented}, {u"repair", Form::Copy}};
    for (const auto &[option, owner] : belongs) {
        if (owner != form && parser.isSet(QString::fromUtf16(option)))
            throw ToolError(u"--%1 has no meaning for this SOURCE"_s.arg(QString::fromUtf16(option)));
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

int ImportCanon(const QStringList &arguments, Console &console)
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
    Report::AddOptions(parser);
    if (ParseOrHelp(parser, u"import canon SOURCE --into FILE [options]"_s, arguments, console))
        return ExitCode::Clean;
    if (parser.positionalArguments().size() != 1 || !parser.isSet(u"into"_s))
        throw ToolError(u"import canon wants one SOURCE and --into FILE; see \"lumivara-data import canon --help\""_s);
    Report report(console);
    report.TakeOptions(parser);
    const QString source = parser.positionalArguments().first(), target = parser.value(u"into"_s);
    const QString client = parser.value(u"client"_s);
    if (!QFileInfo::exists(source))
        throw ToolError(u"%1: there is no such file or folder"_s.arg(source));
    const Form form = FormOf(source, parser.value(u"format"_s));
    Refuse(parser, form);
    if (!client.isEmpty())
        ClientList::Prepare(client);

    std::optional<CheckedCanon> canon;
    if (form == Form::Copy)
        canon = CopyCanon(source, target, parser.isSet(u"repair"_s), report, console);
    else if (form == Form::Folder)
        canon = ImportFrom<CanonFolderReader>(source, target, parser.value(u"table"_s), report, console);
    else
        canon = ImportFrom<SegmentedCanon>(source, target, parser.values(u"author"_s), report, console);
    if (canon && !client.isEmpty())
        AddToList(client, *canon, target, report);
    if (canon)
        report.Tell(u"file"_s, QFileInfo(target).absoluteFilePath());
    return report.Finish(canon ? QString() : u"nothing was written"_s);
}
