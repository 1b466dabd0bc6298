#include "lumivara-data/Verbs.h"

#include "common/Report.h"
#include "lumivara-data/files/BackupChecksum.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/files/Disk.h"
#include "lumivara-data/files/UnfinishedFile.h"
#include "stores/KeloraDM.h"
#include "stores/engine/BackupService.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDate>
#include <QDir>
#include <QRegularExpression>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype DailiesKept = 7;

/// "TARUNECLIENT-2024-02-29.fbk" for the marks' file of that name.
QString DatedName(const QString &file, const QDate &day)
{
    return u"%1-%2.fbk"_s.arg(QFileInfo(file).completeBaseName(), day.toString(Qt::ISODate));
}

/// Removes all but the newest of the files that are named by nothing but a date.
void Rotate(const QDir &folder, const QString &file)
{
    const QRegularExpression dated(QRegularExpression::anchoredPattern(
        QRegularExpression::escape(QFileInfo(file).completeBaseName()) + uR"(-\d{4}-\d{2}-\d{2}\.fbk)"_s));
    const QStringList backups = folder.entryList(QDir::Files, QDir::Name).filter(dated);
    for (qsizetype i = 0; i < backups.size() - DailiesKept; ++i)
        QFile::remove(folder.filePath(backups[i]));
}

/// False if there is such a backup, or another process is making it at this moment.
bool SaveNew(const QString &file, const QString &backup)
{
    if (QFileInfo::exists(backup))
        return false;
    try {
        FileInTheMaking making(backup);
        if (QFileInfo::exists(backup))
            return false;
        OnFile(u"%1 into %2"_s.arg(file, backup), [&] {
            BackupService(ClientLibraryPath(QCoreApplication::applicationDirPath() + u'/')).Backup(file, making.Path());
            BackupChecksum::Append(making.Path());
        });
        making.FinishNew();
    } catch (const MadeElsewhere &) {
        return false;
    }
    return true;
}

/// Saves under the first dated name that is not taken, and gives that.
QString SaveUnderFreeName(const QString &file, const QDir &folder)
{
    const QString name = DatedName(file, QDate::currentDate());
    QString path = folder.filePath(name);
    for (int number = 2;; ++number) {
        if (SaveNew(file, path))
            return path;
        path = folder.filePath(u"%1-%2.fbk"_s.arg(QFileInfo(name).completeBaseName()).arg(number));
    }
}

/// One backup a day; true if it was made, false if there is nothing to do.
bool SaveOfTheDay(const QString &file, const QDir &folder)
{
    if (!SaveNew(file, folder.filePath(DatedName(file, QDate::currentDate()))))
        return false;
    Rotate(folder, file);
    return true;
}

} // namespace

std::optional<BackupOptions> ParseBackup(const QStringList &arguments, Console &console)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Saves the reader's marks into one file, also while the program runs. An existing backup is never touched."_s);
    parser.addOption({u"file"_s, u"The marks; TARUNECLIENT.FDB beside the tool by default."_s, u"FILE"_s,
                      DefaultFile(Thing::Marks)});
    parser.addOption({u"to"_s,
                      u"The backup; by default a file in the folder \"backup\" beside the marks, named by the date."_s,
                      u"FILE"_s});
    parser.addOption(
        {u"daily"_s, u"Does nothing if there is a backup of this day, and keeps the seven newest days."_s});
    Report::AddOptions(parser);
    if (ParseOrHelp(parser, u"backup [marks] [options]"_s, arguments, console))
        return std::nullopt;
    if (const QStringList rest = WithoutMarksWord(parser.positionalArguments()); !rest.isEmpty())
        throw ToolError(u"backup does not know \"%1\""_s.arg(rest.first()));
    if (parser.isSet(u"to"_s) && parser.isSet(u"daily"_s))
        throw ToolError(u"--daily names its file itself"_s);
    return BackupOptions{parser.value(u"file"_s), parser.value(u"to"_s), parser.isSet(u"daily"_s),
                         Report::OptionsOf(parser)};
}

int Run(const BackupOptions &options, Console &console)
{
    Report report(console, options.report);
    const QString file = QFileInfo(options.file).absoluteFilePath();
    if (!QFileInfo(file).isFile())
        throw ToolError(u"%1: there is no such file"_s.arg(file));
    QString backup = QFileInfo(options.to).absoluteFilePath();
    if (options.to.isEmpty()) {
        const QDir folder(QFileInfo(file).absolutePath() + u"/backup"_s);
        if (!MakeSharedFolder(folder.path()))
            throw ToolError(u"%1: the folder cannot be made: %2"_s.arg(folder.path(), qt_error_string(errno)));
        if (options.isDaily) {
            if (!SaveOfTheDay(file, folder))
                report.Say(u"nothing to do"_s);
            return report.Finish();
        }
        backup = SaveUnderFreeName(file, folder);
    } else if (!SaveNew(file, backup)) {
        throw ToolError(u"%1: the file exists, or is being made"_s.arg(backup));
    }
    report.Say(u"%1: saved"_s.arg(backup));
    report.Tell(u"file"_s, backup);
    return report.Finish();
}
