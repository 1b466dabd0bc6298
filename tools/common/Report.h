#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

#include <utility>

class Console;
class QCommandLineParser;

/// What the user wants of every report.
struct ReportOptions
{
    bool isQuiet = false; ///< only what is wrong is told
    bool isJson = false;  ///< one object on the standard output
};

/// What a verb has done and what it has not: counts, and one line for each thing that is wrong or was left out. Lines
/// are printed as they come; the counts close the report. With --json the whole is one object on the standard output,
/// with --quiet only what is wrong is told.
class Report
{
public:
    explicit Report(Console &console, const ReportOptions &options = {});
    /// Keeps what it is told, for another one to take over.
    Report() = default;
    /// If there was no Finish(), passes the findings so far to the console, to be printed with the failure.
    ~Report();
    Report(const Report &) = default;
    Report &operator=(const Report &) = default;
    Report(Report &&) = default;
    Report &operator=(Report &&) = default;

    /// Gives a verb the options of every report, --quiet and --json.
    static void AddOptions(QCommandLineParser &parser);
    /// Reads them; call once the parser has parsed.
    static ReportOptions OptionsOf(const QCommandLineParser &parser);

    /// One thing that is wrong or was skipped: where (file, line, row) and what. Makes the exit code 1.
    void Find(const QString &place, const QString &fault);
    /// Counts further problems without lines of their own.
    void AddUntold(qsizetype number) { m_findingCount += number; }
    /// One thing that was imported with a change; the exit code stays.
    void Note(const QString &place, const QString &change);
    /// Takes over the findings and notes of a report without a console.
    void TakeOver(const Report &kept);
    /// A number of the summary, in the order of the first calls; `what` is a plural such as "texts". Adds up.
    void Count(const QString &what, qsizetype number);
    /// A line of text during the work, such as "KELORA.FDB: built". Not part of the JSON.
    void Say(const QString &line);
    /// A value beside the counts in JSON alone, such as the file that was written.
    void Tell(const QString &key, const QString &value) { m_values[key] = value; }

    qsizetype FindingCount() const { return m_findingCount; }
    /// Place and text of each line kept, and the counts.
    const QList<std::pair<QString, QString>> &Findings() const { return m_findings; }
    const QList<std::pair<QString, QString>> &Notes() const { return m_notes; }
    const QList<std::pair<QString, qsizetype>> &Counts() const { return m_counts; }
    int Code() const;
    /// Prints the summary, with a verdict if one is given ("nothing wrong"), and returns the exit code.
    int Finish(const QString &verdict = {});

private:
    QJsonObject Json() const;
    static void AddLine(QList<std::pair<QString, QString>> &lines, const QString &place, const QString &text);
    void Print(const QString &line);

    Console *m_console = nullptr;
    ReportOptions m_options;
    bool m_isFinished = false;
    QList<std::pair<QString, QString>> m_findings;
    QList<std::pair<QString, QString>> m_notes;
    QList<std::pair<QString, qsizetype>> m_counts;
    QJsonObject m_values;
    qsizetype m_findingCount = 0;
    qsizetype m_noteCount = 0;
};
