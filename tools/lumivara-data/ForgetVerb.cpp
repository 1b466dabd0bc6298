#include "lumivara-data/Verbs.h"

#include "common/Console.h"
#include "common/Report.h"
#include "lumivara-data/files/DataFile.h"
#include "stores/Schema.h"
#include "stores/settings/AutostartEntry.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <filesystem>
#include <iostream>
#include <string>

using namespace Qt::StringLiterals;

namespace {

/// One thing that goes, and why it is the program's.
struct Trace
{
    QString path;
    QString what;
};

QString Place(QStandardPaths::StandardLocation location)
{
    return QDir::cleanPath(QStandardPaths::writableLocation(location));
}

/// The folder where the installed program runs for this user.
QString OwnFolder()
{
    return Place(QStandardPaths::GenericDataLocation) + u"/lumivara/Lumivara"_s;
}

QFileInfoList EntriesOf(const QString &folder, const QStringList &names)
{
    return QDir(folder).entryInfoList(names, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                                      QDir::Name);
}

/// What the launcher and the program put into the user's program folder. By name, so that nothing else goes with it.
void AddProgram(const QString &folder, QList<Trace> &traces, QStringList &kept)
{
    static const QStringList ours =
        QStringList{DatabaseFile::Canon, DatabaseFile::Dictionary} +
        u"Lumivara lumivara-data lumivara-lang lumivara-skins launcher firebird libfbclient.so.2 lock AllSkins.skinres "
        "LumivaraUserGuide.pdf *.lng tmpfocus.html tmpfocus.html.?????? .new-?????? *.FDB.part *.FDB.part-?????? "
        "*.FDB.part.lock *.FDB.part.copy *.FDB.import.lock"_s.split(u' ');
    static const QStringList notes{DatabaseFile::Marks, u"backup"_s};
    for (const QFileInfo &entry : EntriesOf(folder, {})) {
        if (notes.contains(entry.fileName()))
            continue;
        if (QDir::match(ours, entry.fileName()))
            traces.append({entry.filePath(), u"program"_s});
        else
            kept.append(entry.filePath());
    }
}

/// Folders that first starts were making when they were cut off.
void AddHalfMade(const QString &shelf, QList<Trace> &traces)
{
    for (const QFileInfo &entry : EntriesOf(shelf, {u".new-??????"_s})) {
        if (entry.isDir())
            traces.append({entry.filePath(), u"program"_s});
    }
}

void AddSettings(const QString &folder, QList<Trace> &traces)
{
    for (const QFileInfo &entry :
         EntriesOf(folder, {u"registry.json"_s, u"registry.lock"_s, u"registry.damaged-*.json"_s}))
        traces.append({entry.filePath(), u"settings"_s});
}

/// The start list's file, if it starts what goes or nothing at all.
void AddStartEntry(const QString &folder, const QString &program, QList<Trace> &traces, QStringList &kept)
{
    for (const QFileInfo &entry : EntriesOf(folder, {u"Kelora.desktop"_s})) {
        QFile file(entry.filePath());
        if (!file.open(QIODevice::ReadOnly))
            throw ToolError(u"%1: %2"_s.arg(entry.filePath(), file.errorString()));
        const QByteArray bytes = file.readAll();
        QString command = ReadAutostartFile(bytes).command;
        command.remove(u'"');
        const bool wasMadeByUs = bytes.contains("\nX-Lumivara-Command=") || command.isEmpty();
        const bool startsAnother = QFileInfo::exists(command) && QFileInfo(command).absolutePath() != program;
        if (wasMadeByUs && !startsAnother)
            traces.append({entry.filePath(), u"start-list entry"_s});
        else
            kept.append(entry.filePath());
    }
}

void AddCaches(QList<Trace> &traces)
{
    for (const QFileInfo &entry : EntriesOf(Place(QStandardPaths::GenericCacheLocation), {u"Lumivara*"_s}))
        traces.append({entry.filePath(), u"cache"_s});
    const QString runtime = Place(QStandardPaths::RuntimeLocation);
    for (const QFileInfo &entry : EntriesOf(runtime, {u"lumivara-lock-*"_s})) {
        if (!runtime.isEmpty() && entry.isDir() && !entry.isSymLink())
            traces.append({entry.filePath(), u"cache"_s});
    }
}

/// Throws while the program has the marks open: it would go on with locks that a next one does not know of.
void RefuseWhileOpen(const QString &marks)
{
    if (!QFileInfo(marks).isFile())
        return;
    qlonglong attachments = 0;
    try {
        DataFile file;
        file.Open(marks);
        attachments =
            file.Rows(u"select count(*) from MON$ATTACHMENTS A where A.MON$SYSTEM_FLAG = 0"_s)[0][0].toLongLong();
        file.Close();
    } catch (const std::exception &) {
        return; // the program can't have opened it either
    }
    if (attachments > 1)
        throw ToolError(u"%1 is open: end the program first; nothing was removed"_s.arg(marks));
}

/// Links themselves go, never what they lead to.
bool Remove(const QString &path)
{
    std::error_code error;
    return std::filesystem::remove_all(QFileInfo(path).filesystemFilePath(), error) > 0 && !error;
}

void Confirm(const QList<Trace> &traces, Console &console)
{
    QString text = u"This goes for good:\n"_s;
    for (const Trace &trace : traces)
        text += u"  %1 (%2)\n"_s.arg(trace.path, trace.what);
    console.PrintError(text + u"The notes stay. Type \"yes\" to go on: "_s);
    std::string answer;
    std::getline(std::cin, answer);
    if (QString::fromStdString(answer).trimmed() != u"yes"_s)
        throw ToolError(u"nothing was removed"_s);
}

} // namespace

std::optional<ForgetMeOptions> ParseForgetMe(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Removes what the program keeps for this user: the settings, the start-list entry, caches and the user's\n"
        u"program folder. The notes stay: TARUNECLIENT.FDB and the folder \"backup\" beside it, and every file that\n"
        u"is not the program's. Asks before it does so."_s);
    parser.addOption(
        {u"folder"_s, u"The program folder; the one of the installed program by default."_s, u"FOLDER"_s, OwnFolder()});
    parser.addOption({u"yes"_s, u"Does not ask."_s});
    Report::AddOptions(parser);
    if (ParseOrHelp(parser, u"forget-me [options]"_s, arguments, console))
        return std::nullopt;
    if (const QStringList rest = parser.positionalArguments(); !rest.isEmpty())
        throw ToolError(u"forget-me does not know \"%1\""_s.arg(rest.first()));
    return ForgetMeOptions{parser.value(u"folder"_s), parser.isSet(u"folder"_s), parser.isSet(u"yes"_s),
                           Report::OptionsOf(parser)};
}

int Run(const ForgetMeOptions &options, Console &console)
{
    Report report(console, options.report);
    const QString folder = QFileInfo(options.folder).absoluteFilePath();
    const bool isFolder =
        QFileInfo(folder + u'/' + DatabaseFile::Marks).exists() || QFileInfo(folder + u"/Lumivara"_s).exists();
    if (options.isFolderNamed && !isFolder)
        throw ToolError(u"%1: is no folder of the program"_s.arg(folder));

    const QString config = Place(QStandardPaths::GenericConfigLocation);
    QList<Trace> traces;
    QStringList kept;
    AddSettings(config + u"/lumivara"_s, traces);
    AddStartEntry(config + u"/autostart"_s, folder, traces, kept);
    AddCaches(traces);
    if (!options.isFolderNamed)
        AddHalfMade(QFileInfo(folder).path(), traces);
    if (isFolder) {
        RefuseWhileOpen(folder + u'/' + DatabaseFile::Marks);
        AddProgram(folder, traces, kept);
    }
    if (!traces.isEmpty() && !options.isSure)
        Confirm(traces, console);
    for (const Trace &trace : std::as_const(traces)) {
        if (Remove(trace.path)) {
            report.Say(u"%1: removed"_s.arg(trace.path));
            report.Count(u"removed"_s, 1);
        } else {
            report.Find(trace.path, u"could not be removed"_s);
        }
    }
    // Only what is empty now.
    QDir().rmdir(config + u"/lumivara"_s);
    QDir().rmdir(folder);
    QDir().rmdir(QFileInfo(folder).path());
    for (const QString &path : std::as_const(kept))
        report.Note(path, u"is not the program's: kept"_s);
    if (QFileInfo::exists(folder + u'/' + DatabaseFile::Marks))
        report.Note(folder + u'/' + DatabaseFile::Marks, u"the notes: kept"_s);
    return report.Finish(traces.isEmpty() ? u"nothing to remove"_s : QString());
}
