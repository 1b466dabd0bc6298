#pragma once

#include <QElapsedTimer>
#include <QJsonObject>
#include <QString>

#include <functional>
#include <optional>

/// A text that cannot harm who reads it on a terminal: control characters other than line ends and tabs, and those that
/// turn the direction of writing, become "\uXXXX", which JSON reads as the character itself.
QString Harmless(const QString &text);

/// A tool's standard output and error streams, in UTF-8 whatever the locale. Results go to the output, messages and
/// progress to the error stream.
class Console
{
public:
    /// `tool` is the name before messages.
    explicit Console(const QString &tool);
    const QString &Tool() const { return m_tool; }

    /// Writes text, made harmless; lines end in "\n".
    void Print(const QString &text);
    /// One line; line ends in it, as names of files may have them, become blanks.
    void PrintLine(const QString &line);
    /// Writes what the user has asked for unchanged, and harmless on a terminal.
    void Put(const QString &data);
    /// As Print().
    void PrintError(const QString &text);
    /// One message line, with the tool's name in front.
    void Error(const QString &message);
    /// Shows the progress of a long operation. On a terminal it rewrites one line, with an estimate of the remaining
    /// time; otherwise it prints a line, and the next one ten seconds later at the earliest, whatever the operation.
    /// Throws ToolError after an interrupt.
    void Progress(const QString &work, qsizetype done, qsizetype total, const QString &unit = QStringLiteral("rows"));
    /// If false, no progress is shown.
    void SetShowsProgress(bool on) { m_showsProgress = on; }
    /// Passes progress on instead of showing it.
    using ProgressTaker =
        std::function<void(const QString &work, qsizetype done, qsizetype total, const QString &unit)>;
    void SetProgressTaker(ProgressTaker taker) { m_progressTaker = std::move(taker); }
    /// The clock of progress without a terminal, in milliseconds.
    void SetClock(std::function<qint64()> clock) { m_clock = std::move(clock); }
    /// Ends the line that Progress rewrites.
    void EndProgress();
    /// The part of a JSON report that was known when a failure ended it.
    void KeepReport(const QJsonObject &report) { m_keptReport = report; }
    const QJsonObject &KeptReport() const { return m_keptReport; }
    /// False once a write to standard output has failed.
    bool IsOutputWhole() const { return m_isOutputWhole; }

private:
    QString m_tool;
    QString m_work;
    QJsonObject m_keptReport;
    bool m_isOutputWhole = true;
    bool m_showsProgress = true;
    ProgressTaker m_progressTaker;
    std::function<qint64()> m_clock;
    std::optional<qint64> m_lastLine; ///< without a terminal
    QElapsedTimer m_sinceStart;       ///< of the work
    QElapsedTimer m_sinceShown;       ///< of the line on the terminal
};
