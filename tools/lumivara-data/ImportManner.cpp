#include "lumivara-data/ImportManner.h"

#include "base/Messages.h"
#include "common/Console.h"
#include "common/Report.h"
#include "lumivara-data/files/UnfinishedFile.h"

#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype LongestLicence = 200; ///< characters that are told

Console::ProgressTaker LinesOf(Console &console)
{
    constexpr qint64 restMilliseconds = 100;
    struct Told
    {
        QString work;
        QElapsedTimer since;
    };
    return [&console, told = std::make_shared<Told>()](const QString &work, qsizetype done, qsizetype total,
                                                       const QString &unit) {
        if (told->work == work && done < total && told->since.isValid() && told->since.elapsed() < restMilliseconds)
            return;
        told->work = work;
        told->since.start();
        const QJsonObject step{{u"work"_s, work}, {u"done"_s, done}, {u"total"_s, total}, {u"unit"_s, unit}};
        console.PrintError(QString::fromUtf8(QJsonDocument(step).toJson(QJsonDocument::Compact)) + u'\n');
    };
}

/// The first line that says something.
QString FirstLine(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    constexpr qint64 mostBytes = 4096;
    const QStringList lines = QString::fromUtf8(file.read(mostBytes)).split(u'\n');
    for (const QString &line : lines) {
        const QString words = line.simplified();
        if (words.size() > 2)
            return words.left(LongestLicence);
    }
    return {};
}

QString LicenceOf(const QString &source)
{
    const QFileInfo info(source);
    const QDir folder(info.isDir() ? source : info.absolutePath());
    const QStringList names{u"LICENSE*"_s, u"LICENCE*"_s, u"COPYING*"_s};
    for (const QFileInfo &file : folder.entryInfoList(names, QDir::Files | QDir::NoSymLinks, QDir::Name)) {
        const QString line = FirstLine(file.filePath());
        if (!line.isEmpty())
            return line;
    }
    return {};
}

} // namespace

void AddMannerOptions(QCommandLineParser &parser)
{
    parser.addOption({u"dry-run"_s, u"Tells what would be made and what left out, and writes nothing."_s});
    parser.addOption({u"keep-before"_s, u"The file that is replaced stays beside as FILE.before."_s});
    parser.addOption({u"progress"_s, u"Tells the progress in lines of JSON on the standard error stream."_s});
    // For the program, which shows the report to its reader.
    QCommandLineOption words(u"words"_s, u"The language of the report, vi or en."_s, u"LANGUAGE"_s);
    words.setFlags(QCommandLineOption::HiddenFromHelp);
    parser.addOption(words);
}

ImportManner MannerOf(const QCommandLineParser &parser)
{
    return {parser.isSet(u"dry-run"_s), parser.isSet(u"keep-before"_s), parser.isSet(u"progress"_s),
            parser.value(u"words"_s) == "vi"_L1};
}

void Follow(const ImportManner &manner, Console &console)
{
    SpeechOfTools::isVietnamese = manner.isVietnamese;
    if (manner.isTrial)
        FinishNoFiles();
    if (manner.keepsBefore)
        KeepReplacedFiles();
    if (manner.tellsProgress)
        console.SetProgressTaker(LinesOf(console));
}

void TellSource(const QString &source, const QString &form, Report &report)
{
    report.Tell(u"form"_s, form);
    const QString licence = LicenceOf(source);
    if (!licence.isEmpty())
        report.Tell(u"licence"_s, licence);
}
