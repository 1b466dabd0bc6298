#include "lumivara-data/Verbs.h"

#include "common/Console.h"
#include "common/Report.h"
#include "lumivara-data/canon/CanonFile.h"
#include "lumivara-data/canon/CanonFolderWriter.h"
#include "lumivara-data/canon/CanonRows.h"
#include "lumivara-data/canon/ExportFolder.h"
#include "lumivara-data/sealed/Examination.h"

#include <QCommandLineParser>
#include <QFileInfo>

using namespace Qt::StringLiterals;

std::optional<ExportCanonOptions> ParseExportCanon(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Writes a canon as a folder: each page as it is stored, and the table canon.csv "
                                     u"of groups and texts. An import\n"
                                     u"of the folder gives the same rows. Works while the program runs."_s);
    parser.addOption(
        {u"file"_s, u"The canon; KELORA.FDB beside the tool by default."_s, u"FILE"_s, DefaultFile(Thing::Canon)});
    parser.addOption({u"out"_s, u"The folder to make, in place of an older export."_s, u"FOLDER"_s});
    parser.addOption({u"format"_s,
                      u"folder, or segmented for the texts as segmented JSON beside the pages; folder by default."_s,
                      u"FORMAT"_s, u"folder"_s});
    Report::AddOptions(parser);
    if (ParseOrHelp(parser, u"export canon --out FOLDER [options]"_s, arguments, console))
        return std::nullopt;
    if (const QStringList rest = parser.positionalArguments(); !rest.isEmpty())
        throw ToolError(u"export canon does not know \"%1\""_s.arg(rest.first()));
    const QString format = parser.value(u"format"_s).toLower();
    if (format != "folder"_L1 && format != "segmented"_L1)
        throw ToolError(u"there is no format \"%1\": folder or segmented"_s.arg(parser.value(u"format"_s)));
    if (parser.value(u"out"_s).isEmpty())
        throw ToolError(u"export canon wants --out FOLDER"_s);
    return ExportCanonOptions{parser.value(u"file"_s), parser.value(u"out"_s), format == "segmented"_L1,
                              Report::OptionsOf(parser)};
}

int Run(const ExportCanonOptions &options, Console &console)
{
    Report report(console, options.report);
    const QString path = QFileInfo(options.file).absoluteFilePath();
    if (!QFileInfo(path).isFile())
        throw ToolError(u"%1: there is no such file"_s.arg(path));
    ExportFolder folder(options.out);
    DataFile file;
    try {
        file.Open(OpenablePath(path, true, console));
        if (!IsCanon(file))
            throw ToolError(u"%1: no canon (tables KELORA_TREE, KELORA_CONTENT)"_s.arg(path));
        CanonRows rows(file);
        WriteCanonFolder(rows, folder, options.isSegmented, report, console);
    } catch (const DatabaseError &error) {
        throw ToolError(u"%1: %2"_s.arg(path, error.Text()));
    }
    file.Close();
    folder.Finish();
    report.Tell(u"folder"_s, QFileInfo(options.out).absoluteFilePath());
    return report.Finish();
}
