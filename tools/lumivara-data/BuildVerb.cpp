#include "lumivara-data/Verbs.h"

#include "common/Console.h"
#include "lumivara-data/CanonFile.h"
#include "lumivara-data/DataFile.h"
#include "lumivara-data/DictionaryFile.h"
#include "lumivara-data/UnfinishedFile.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QLockFile>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

constexpr int PatienceMilliseconds = 60000;

/// A file to build: its kind on the command line, its name, and how it is made.
struct Target
{
    QString kind;
    QString fileName;
    /// Folder of its sources below the data folder; empty for a file without sources, which is made once.
    QString sources;
    std::function<void(const QString &sources, const QString &path)> write;
};

QList<Target> Targets(Console &console)
{
    return {
        {u"canon"_s, u"KELORA.FDB"_s, u"canon"_s,
         [&console](const QString &sources, const QString &path) {
             WriteCanon(ReadCanonSource(sources), path, console);
         }},
        {u"dictionary"_s, u"PALIDICT.FDB"_s, u"dictionary"_s,
         [&console](const QString &sources, const QString &path) {
             WriteDictionary(ReadDictionarySources(sources), path, console);
         }},
        {u"marks"_s,
         u"TARUNECLIENT.FDB"_s,
         {},
         [](const QString &, const QString &path) {
             DataFile file;
             file.Create(path);
             file.RunSchema(u"client"_s);
             file.Finish(false);
         }},
    };
}

/// Newest change below a folder. Folders count too: they change when a file in them goes.
QDateTime NewestChange(const QString &folder)
{
    QDateTime newest = QFileInfo(folder).lastModified();
    QDirIterator files(folder, QDir::AllEntries | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        files.next();
        newest = qMax(newest, files.fileInfo().lastModified());
    }
    return newest;
}

/// The tool counts as a source: schema and pages are its doing.
bool IsUpToDate(const QString &path, const QString &sources)
{
    const QFileInfo target(path);
    if (!target.exists())
        return false;
    return target.lastModified() >= NewestChange(sources) &&
           target.lastModified() >= QFileInfo(QCoreApplication::applicationFilePath()).lastModified();
}

void Build(const Target &target, const QDir &data, const QDir &out, bool force, Console &console)
{
    const QString path = out.filePath(target.fileName);
    const bool isMadeOnce = target.sources.isEmpty();
    if (isMadeOnce && QFileInfo::exists(path)) {
        console.Print(u"%1: kept, it is the reader's own\n"_s.arg(target.fileName));
        return;
    }
    const QString sources = data.filePath(target.sources);
    if (!isMadeOnce && !force && IsUpToDate(path, sources)) {
        console.Print(u"%1: up to date\n"_s.arg(target.fileName));
        return;
    }
    const QString unfinished = path + u".part"_s;
    RemoveStale(unfinished);
    target.write(sources, unfinished);
    Settle(unfinished);
    if (!isMadeOnce) {
        Replace(unfinished, path);
    } else {
        PutInPlace(unfinished, path);
    }
    console.Print(u"%1: built\n"_s.arg(target.fileName));
}

} // namespace

int RunBuild(const QStringList &arguments, Console &console)
{
    const QString toolFolder = QCoreApplication::applicationDirPath();
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Makes KELORA.FDB, PALIDICT.FDB and TARUNECLIENT.FDB from their sources. A file is replaced whole or not at\n"
        u"all, and only when its sources are newer. A TARUNECLIENT.FDB that exists is never touched."_s);
    parser.addOption({u"data"_s, u"Folder of the sources; \"data\" beside the tool by default."_s, u"DIR"_s,
                      QDir(toolFolder).filePath(u"data"_s)});
    parser.addOption({u"out"_s, u"Folder of the databases; that of the tool by default."_s, u"DIR"_s, toolFolder});
    parser.addOption(
        {u"only"_s, u"Builds one kind: canon, dictionary or marks. May be given more than once."_s, u"KIND"_s});
    parser.addOption({u"force"_s, u"Builds canon and dictionary even if they are up to date."_s});
    if (ParseOrHelp(parser, u"build [options]"_s, arguments, console))
        return ExitCode::Clean;
    if (!parser.positionalArguments().isEmpty())
        throw ToolError(u"build does not know \"%1\""_s.arg(parser.positionalArguments().first()));

    const QList<Target> targets = Targets(console);
    const QStringList only = parser.values(u"only"_s);
    for (const QString &kind : only) {
        if (std::none_of(targets.cbegin(), targets.cend(), [&](const Target &target) { return target.kind == kind; }))
            throw ToolError(u"there is no kind \"%1\": canon, dictionary or marks"_s.arg(kind));
    }
    const QDir out(QDir(parser.value(u"out"_s)).absolutePath());
    if (!out.exists())
        throw ToolError(u"%1: there is no such folder"_s.arg(out.path()));
    QLockFile lock(out.filePath(u".lumivara-data.lock"_s));
    if (!lock.tryLock(PatienceMilliseconds)) {
        throw ToolError(lock.error() == QLockFile::LockFailedError ? u"another build is at work in %1"_s.arg(out.path())
                                                                   : u"%1: cannot be written"_s.arg(out.path()));
    }
    for (const Target &target : targets) {
        if (only.isEmpty() || only.contains(target.kind))
            Build(target, QDir(QDir(parser.value(u"data"_s)).absolutePath()), out, parser.isSet(u"force"_s), console);
    }
    return ExitCode::Clean;
}
