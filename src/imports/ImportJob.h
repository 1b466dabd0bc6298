#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>
#include <utility>

/// What a reader brings, and what lumivara-data is asked to do with it. Values alone: nothing here runs or opens more
/// than names.

/// The database into which it goes.
enum class ImportTarget { Canon, Dictionary };

/// What a path looks like: a folder is a StarDict dictionary if it holds its description, else texts; a file is a canon
/// or words by its ending. None for what can't be imported.
std::optional<ImportTarget> TargetOf(const QString &path);

/// One run of the tool.
struct ImportJob
{
    QString source;
    ImportTarget target = ImportTarget::Canon;
    int kind = 0;          ///< of the dictionary, 1 to 8
    bool replaces = true;  ///< the texts, or the words of that kind, go; else they stay
    bool isTrial = false;  ///< tells what would be taken and left out, and changes nothing
    QString programFolder; ///< with its trailing separator: where the databases are

    /// The database file.
    QString File() const;
    /// What the tool is called with.
    QStringList Arguments() const;
};

/// A step of the tool's work; `total` 0 if it is not known.
struct ImportProgress
{
    qint64 done = 0;
    qint64 total = 0;
};
/// A line of the tool's error stream; none if it is no progress.
std::optional<ImportProgress> ProgressOf(const QByteArray &line);

/// What the tool tells at its end, in the interface's language; what others told it stays as it was.
struct ImportReport
{
    bool isDone = false;                        ///< something could be taken
    QString failure;                            ///< why not; empty if the tool did not come to say it
    QString form;                               ///< as the tool names it: "segmented", "stardict" …
    QString name;                               ///< that the source gives itself
    QString licence;                            ///< the first line of it
    QList<std::pair<QString, qint64>> counts;   ///< what was counted, such as "bài"
    QList<std::pair<QString, QString>> leftOut; ///< place and reason, the first of them
    qint64 leftOutCount = 0;                    ///< of all
};
/// Reads the JSON object on the tool's standard output.
ImportReport ReportOf(const QByteArray &json, int exitCode);
/// A count as it is shown, such as "12 bài".
QString CountText(const QString &what, qint64 number);
/// The tool's name of a form, in the interface's language.
QString FormText(const QString &form);
