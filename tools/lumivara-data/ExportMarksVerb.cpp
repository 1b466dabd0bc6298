#include "lumivara-data/Verbs.h"

#include "common/Console.h"
#include "common/Interrupt.h"
#include "common/Report.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/files/UnfinishedFile.h"
#include "lumivara-data/marks/MarkReferences.h"
#include "lumivara-data/marks/MarksCheck.h"
#include "lumivara-data/marks/MarksForms.h"
#include "lumivara-data/sealed/Examination.h"

#include <QCommandLineParser>
#include <QFile>
#include <QFileInfo>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// Gives the number of marks.
qsizetype Write(DataFile &file, MarkReferences &references, const MarksForm &form,
                const std::function<void(const QString &)> &write)
{
    qsizetype count = 0;
    std::optional<Mark> previous;
    write(form.head);
    VisitMarks(file, [&](const Mark &stored) {
        ThrowIfInterrupted();
        Mark mark = stored;
        mark.reference = references.Of(mark);
        write(form.mark(mark, previous ? &*previous : nullptr));
        previous = mark;
        ++count;
    });
    write(form.tail);
    return count;
}

/// Ends when nobody reads any more.
void Show(const QString &text, Console &console)
{
    console.Put(text);
    if (!console.IsOutputWhole())
        throw ToolError(u"the standard output cannot be written"_s);
}

qsizetype WriteWhole(DataFile &file, MarkReferences &references, const MarksForm &form, const QString &path)
{
    FileInTheMaking target(path);
    QFile out(target.Path());
    const auto fail = [&] { throw ToolError(u"%1: %2"_s.arg(path, WriteFault(out))); };
    if (!out.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        fail();
    const qsizetype count = Write(file, references, form, [&](const QString &text) {
        const QByteArray bytes = text.toUtf8();
        if (out.write(bytes) != bytes.size())
            fail();
    });
    out.close();
    if (out.error() != QFile::NoError)
        fail();
    target.Finish();
    return count;
}

/// Opens the canon that the references come from; false where there is none. One that stands beside the tool and can't
/// be read is told where there is a report, and no reason to leave the marks where they are.
bool OpenCanon(DataFile &canon, const QString &named, Report *report, Console &console)
{
    const QString path = named.isEmpty() ? DefaultFile(Thing::Canon) : named;
    if (named.isEmpty() && !QFileInfo::exists(path))
        return false;
    try {
        OnFile(path, [&] {
            canon.Open(OpenablePath(path, true, console));
            if (!canon.HasTable(Table::KeloraContent))
                throw ToolError(u"%1: no canon (tables KELORA_TREE, KELORA_CONTENT)"_s.arg(path));
        });
        return true;
    } catch (const ToolError &error) {
        if (!named.isEmpty())
            throw;
        if (report)
            report->Note(path, u"references are the numbers of texts alone: %1"_s.arg(QString::fromUtf8(error.what())));
        return false;
    }
}

} // namespace

std::optional<ExportMarksOptions> ParseExportMarks(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Writes the reader's marks as UTF-8, sorted by text: the excerpt as text, title, note, keywords, priority,\n"
        u"date, reference and the text's names. CSV has the excerpt as HTML, too. Works while the program runs."_s);
    parser.addOption({u"file"_s, u"The marks; TARUNECLIENT.FDB beside the tool by default."_s, u"FILE"_s,
                      DefaultFile(Thing::Marks)});
    parser.addOption({u"canon"_s,
                      u"References such as 1101:12 come from the pages of this canon; KELORA.FDB beside the tool by "
                      u"default."_s,
                      u"FILE"_s});
    parser.addOption({u"format"_s, u"html, markdown or csv; by the ending of --out by default."_s, u"FORMAT"_s});
    parser.addOption(
        {u"out"_s, u"The file to write, over one that exists; the standard output by default."_s, u"FILE"_s});
    Report::AddOptions(parser);
    if (ParseOrHelp(parser, u"export marks [options]"_s, arguments, console))
        return std::nullopt;
    if (const QStringList rest = parser.positionalArguments(); !rest.isEmpty())
        throw ToolError(u"export does not know \"%1\""_s.arg(rest.first()));
    const QString out = parser.value(u"out"_s);
    if (out.isEmpty() && parser.isSet(u"json"_s))
        throw ToolError(u"--json leaves no room for marks on the standard output; give --out"_s);
    if (out.isEmpty() && !parser.isSet(u"format"_s))
        throw ToolError(u"export wants --format or --out"_s);
    return ExportMarksOptions{
        parser.value(u"file"_s), parser.value(u"canon"_s), out,
        MarksFormNamed(parser.isSet(u"format"_s) ? parser.value(u"format"_s) : QFileInfo(out).suffix().toLower()),
        Report::OptionsOf(parser)};
}

int Run(const ExportMarksOptions &options, Console &console)
{
    Report report(console, options.report);
    const QString path = QFileInfo(options.file).absoluteFilePath();
    const QString &out = options.out;
    if (!QFileInfo(path).isFile())
        throw ToolError(u"%1: there is no such file"_s.arg(path));
    DataFile file, canon;
    qsizetype count = 0;
    OnFile(path, [&] {
        file.Open(OpenablePath(path, true, console));
        if (!IsMarks(file))
            throw ToolError(u"%1: no file of marks (tables SUTTA_LIST, SUTTA_TEXT_FOCUS)"_s.arg(path));
        MarkReferences references(
            OpenCanon(canon, options.canon, out.isEmpty() ? nullptr : &report, console) ? &canon : nullptr);
        count = out.isEmpty()
                    ? Write(file, references, options.form, [&console](const QString &text) { Show(text, console); })
                    : WriteWhole(file, references, options.form, out);
    });
    if (out.isEmpty())
        return ExitCode::Clean;
    report.Count(u"marks"_s, count);
    report.Tell(u"file"_s, out);
    return report.Finish();
}
