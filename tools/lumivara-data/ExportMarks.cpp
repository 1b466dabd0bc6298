#include "lumivara-data/Verbs.h"

#include "common/Console.h"
#include "common/Report.h"
#include "lumivara-data/DataFile.h"
#include "lumivara-data/MarksCheck.h"
#include "lumivara-data/MarksExport.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <QSaveFile>

using namespace Qt::StringLiterals;

namespace {

using Form = QString (*)(const QList<ExportedMark> &);

Form FormNamed(const QString &name)
{
    if (name == "html"_L1)
        return MarksAsHtml;
    if (name == "markdown"_L1 || name == "md"_L1)
        return MarksAsMarkdown;
    if (name == "csv"_L1)
        return MarksAsCsv;
    throw ToolError(u"there is no format \"%1\": html, markdown or csv"_s.arg(name));
}

void WriteWhole(const QString &path, const QString &text)
{
    QSaveFile file(path);
    const QByteArray bytes = text.toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        throw ToolError(u"%1: %2"_s.arg(path, file.errorString()));
}

} // namespace

int ExportMarks(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Writes the reader's marks as UTF-8, sorted by text: the excerpt as text, title, note, keywords, priority,\n"
        u"date and the text's names. CSV has the excerpt as HTML, too. Works while the program runs."_s);
    parser.addOption({u"file"_s, u"The marks; TARUNECLIENT.FDB beside the tool by default."_s, u"FILE"_s,
                      DefaultFile(Thing::Marks)});
    parser.addOption({u"format"_s, u"html, markdown or csv; by the ending of --out by default."_s, u"FORMAT"_s});
    parser.addOption(
        {u"out"_s, u"The file to write, over one that exists; the standard output by default."_s, u"FILE"_s});
    Report::AddOptions(parser);
    if (ParseOrHelp(parser, u"export marks [options]"_s, arguments, console))
        return ExitCode::Clean;
    if (const QStringList rest = parser.positionalArguments(); !rest.isEmpty())
        throw ToolError(u"export does not know \"%1\""_s.arg(rest.first()));
    Report report(console);
    report.TakeOptions(parser);
    const QString out = parser.value(u"out"_s);
    if (out.isEmpty() && parser.isSet(u"json"_s))
        throw ToolError(u"--json leaves no room for marks on the standard output; give --out"_s);
    if (out.isEmpty() && !parser.isSet(u"format"_s))
        throw ToolError(u"export wants --format or --out"_s);
    const Form form =
        FormNamed(parser.isSet(u"format"_s) ? parser.value(u"format"_s) : QFileInfo(out).suffix().toLower());

    const QString path = QFileInfo(parser.value(u"file"_s)).absoluteFilePath();
    if (!QFileInfo(path).isFile())
        throw ToolError(u"%1: there is no such file"_s.arg(path));
    DataFile file;
    file.Open(path);
    if (!IsMarks(file))
        throw ToolError(u"%1: no file of marks (tables SUTTA_LIST, SUTTA_TEXT_FOCUS)"_s.arg(path));
    const QList<ExportedMark> marks = ReadMarks(file);
    file.Close();
    if (out.isEmpty()) {
        console.Print(form(marks));
        return ExitCode::Clean;
    }
    WriteWhole(out, form(marks));
    report.Count(u"marks"_s, marks.size());
    report.Tell(u"file"_s, out);
    return report.Finish();
}
