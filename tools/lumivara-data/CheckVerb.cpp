#include "lumivara-data/Verbs.h"

#include "common/Console.h"
#include "lumivara-data/CanonFile.h"
#include "lumivara-data/DataFile.h"
#include "lumivara-data/DictionaryFile.h"
#include "lumivara-data/MarksCheck.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

/// Copies the file to a folder of our own. The engine writes into whatever it opens (header page, lock files beside it)
/// and refuses some files without write permission: a check must do neither.
QString CopyOf(const QString &path, const QTemporaryDir &folder)
{
    const QFileInfo info(path);
    if (!info.exists())
        throw ToolError(u"%1: there is no such file"_s.arg(path));
    if (!info.isFile())
        throw ToolError(u"%1: not a file"_s.arg(path));
    QFile original(path);
    QFile copy(folder.filePath(u"checked.fdb"_s));
    if (!folder.isValid() || !copy.open(QIODevice::WriteOnly))
        throw ToolError(u"there is no place for a temporary copy: %1"_s.arg(folder.isValid() ? copy.errorString()
                                                                                             : folder.errorString()));
    if (!original.open(QIODevice::ReadOnly))
        throw ToolError(u"%1: %2"_s.arg(path, original.errorString()));
    constexpr qint64 chunk = 1 << 20;
    while (!original.atEnd()) {
        const QByteArray bytes = original.read(chunk);
        if (bytes.isEmpty())
            throw ToolError(u"%1: %2"_s.arg(path, original.errorString()));
        if (copy.write(bytes) != bytes.size())
            throw ToolError(u"there is no room for a temporary copy: %1"_s.arg(copy.errorString()));
    }
    copy.close();
    if (copy.error() != QFileDevice::NoError)
        throw ToolError(u"there is no room for a temporary copy: %1"_s.arg(copy.errorString()));
    return copy.fileName();
}

void PrintFindings(const QList<Finding> &findings, Console &console)
{
    for (const Finding &finding : findings)
        console.Print(u"%1: %2\n"_s.arg(finding.row, finding.fault));
}

/// The last words of a summary.
QString Verdict(qsizetype faultCount)
{
    return faultCount == 0 ? u"nothing wrong"_s : u"%1 findings"_s.arg(faultCount);
}

qsizetype ProveCanon(DataFile &file, Console &console)
{
    const CheckedCanon canon = ReadCanon(file, console);
    const QList<Finding> findings = CheckCanon(canon);
    PrintFindings(findings, console);
    console.Print(
        u"%1 groups, %2 texts: %3\n"_s.arg(canon.groups.size()).arg(canon.texts.size()).arg(Verdict(findings.size())));
    return findings.size();
}

qsizetype ProveDictionary(DataFile &file, Console &console)
{
    const DictionaryReport report = CheckDictionary(file, console);
    PrintFindings(report.findings, console);
    console.Print(u"%1 words: %2\n"_s.arg(report.wordCount).arg(Verdict(report.faultCount)));
    return report.faultCount;
}

qsizetype ProveMarks(DataFile &file, Console &console)
{
    const MarksReport report = CheckMarks(file);
    PrintFindings(report.findings, console);
    console.Print(
        u"%1 texts, %2 marks: %3\n"_s.arg(report.textCount).arg(report.markCount).arg(Verdict(report.findings.size())));
    return report.findings.size();
}

} // namespace

int RunCheck(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Tells what is wrong with a canon, a dictionary or a file of marks, one finding a line with the row named, "
        u"and a summary.\n"
        u"The file is only read, a dictionary through its three procedures alone.\n"
        u"Exit codes: 0 clean, 1 findings, 2 wrong usage or a file that is none of these."_s);
    parser.addPositionalArgument(u"FILE"_s, u"Such as KELORA.FDB, PALIDICT.FDB or TARUNECLIENT.FDB."_s);
    if (ParseOrHelp(parser, u"check FILE"_s, arguments, console))
        return ExitCode::Clean;
    if (parser.positionalArguments().size() != 1)
        throw ToolError(u"check wants one FILE; see \"lumivara-data check --help\""_s);

    const QTemporaryDir folder;
    DataFile file;
    file.Open(CopyOf(parser.positionalArguments().first(), folder));
    qsizetype faultCount = 0;
    if (IsCanon(file))
        faultCount = ProveCanon(file, console);
    else if (IsDictionary(file))
        faultCount = ProveDictionary(file, console);
    else if (IsMarks(file))
        faultCount = ProveMarks(file, console);
    else
        throw ToolError(u"no canon (tables KELORA_TREE, KELORA_CONTENT), no dictionary (procedure SP_GET_LIST_WORDS) "
                        "and no file of marks (tables SUTTA_LIST, SUTTA_TEXT_FOCUS)"_s);
    file.Close();
    return faultCount == 0 ? ExitCode::Clean : ExitCode::Findings;
}
