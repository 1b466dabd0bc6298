#include "lumivara-data/Verbs.h"
#include "lumivara-data/sample/SampleWriter.h"
#include "stores/Schema.h"

#include "common/Interrupt.h"
#include "common/Report.h"
#include "lumivara-data/canon/CanonFile.h"
#include "lumivara-data/dictionary/DictionaryFile.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/files/TimeMade.h"
#include "lumivara-data/files/UnfinishedFile.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QThread>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

/// A file to build: what it is called on the command line, its name, and how it is made.
struct Target
{
    Thing thing;
    QString fileName;
    /// Folder of its sources below the data folder; empty for a file without sources, which is made once.
    QString sources;
    std::function<void(const QString &sources, const QString &path)> write;
};

QList<Target> Targets(Console &console)
{
    return {
        {Thing::Canon, DatabaseFile::Canon, u"canon"_s,
         [&console](const QString &sources, const QString &path) {
             WriteCanon(ReadSampleCanon(sources), path, console);
         }},
        {Thing::Dictionary, DatabaseFile::Dictionary, u"dictionary"_s,
         [&console](const QString &sources, const QString &path) {
             WriteDictionary(ReadSampleDictionary(sources), path, console);
         }},
        {Thing::Marks,
         DatabaseFile::Marks,
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

void Build(const Target &target, const QDir &data, const QDir &out, bool force, Report &report)
{
    const QString path = out.filePath(target.fileName);
    const bool isMadeOnce = target.sources.isEmpty();
    if (isMadeOnce && QFileInfo::exists(path)) {
        report.Say(u"%1: kept, it is the reader's own"_s.arg(target.fileName));
        return;
    }
    const QString sources = data.filePath(target.sources);
    if (!isMadeOnce && !force && IsUpToDate(path, sources)) {
        report.Say(u"%1: up to date"_s.arg(target.fileName));
        return;
    }
    FileInTheMaking making(path);
    target.write(sources, making.Path());
    if (const std::optional<QDateTime> time = WantedTimeMade())
        SetTimeMade(making.Path(), *time);
    isMadeOnce ? making.FinishNew() : making.Finish();
    report.Say(u"%1: built"_s.arg(target.fileName));
}

void WaitFor(FileLock &lock, const QString &folder)
{
    constexpr qint64 patienceMilliseconds = 60000;
    constexpr unsigned long pauseMilliseconds = 20;
    QElapsedTimer waited;
    waited.start();
    while (!lock.Take()) {
        ThrowIfInterrupted();
        if (waited.elapsed() > patienceMilliseconds)
            throw ToolError(u"another build is at work in %1"_s.arg(folder));
        QThread::msleep(pauseMilliseconds);
    }
}

} // namespace

std::optional<BuildOptions> ParseBuild(const QStringList &arguments, Console &console)
{
    const QString toolFolder = QCoreApplication::applicationDirPath();
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Makes KELORA.FDB, PALIDICT.FDB and TARUNECLIENT.FDB from their sources. A file is replaced whole or not at\n"
        u"all, and only when its sources are newer. A TARUNECLIENT.FDB that exists is never touched."_s);
    parser.addOption({u"data"_s, u"Folder of the sources; \"data\" beside the tool by default."_s, u"DIR"_s,
                      QDir(toolFolder).filePath(u"data"_s)});
    parser.addOption({u"out"_s, u"Folder of the databases; that of the tool by default."_s, u"DIR"_s, toolFolder});
    parser.addOption({u"force"_s, u"Builds canon and dictionary even if they are up to date."_s});
    Report::AddOptions(parser);
    if (ParseOrHelp(parser, u"build [canon] [dictionary] [marks] [options]"_s, arguments, console))
        return std::nullopt;
    BuildOptions options{
        {}, parser.value(u"data"_s), parser.value(u"out"_s), parser.isSet(u"force"_s), Report::OptionsOf(parser)};
    for (QStringList words = parser.positionalArguments(); !words.isEmpty();) {
        options.only.append(TakeThing(words));
        if (options.only.last() == Thing::None)
            throw ToolError(u"build does not know \"%1\""_s.arg(words.first()));
    }
    return options;
}

int Run(const BuildOptions &options, Console &console)
{
    Report report(console, options.report);
    const QDir out(QDir(options.out).absolutePath());
    if (!out.exists())
        throw ToolError(u"%1: there is no such folder"_s.arg(out.path()));
    FileLock lock(out.filePath(u".lumivara-data.lock"_s));
    WaitFor(lock, out.path());
    UsePrivateLocks();
    for (const Target &target : Targets(console)) {
        if (options.only.isEmpty() || options.only.contains(target.thing))
            Build(target, QDir(QDir(options.data).absolutePath()), out, options.isForced, report);
    }
    return report.Finish();
}
