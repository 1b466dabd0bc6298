#pragma once

#include <QElapsedTimer>
#include <QJsonObject>
#include <QString>

/// A tool's standard output and error streams, in UTF-8 whatever the locale. Results go to the output, messages and
/// progress to the error stream.
class Console
{
public:
    /// `tool` is the name that stands before messages.
    explicit Console(const QString &tool) : m_tool(tool) {}
    const QString &Tool() const { return m_tool; }

    /// Text as it stands; lines end by "\n".
    void Print(const QString &text);
    void PrintError(const QString &text);
    /// One message line, with the tool's name in front.
    void Error(const QString &message);
    /// How far a long work is. On a terminal one line is rewritten, with an estimate of the time that is left;
    /// elsewhere the first call of a work prints a line. Throws ToolError when the user wants the tool to end.
    void Progress(const QString &work, qsizetype done, qsizetype total, const QString &unit = QStringLiteral("rows"));
    /// Off: long works are silent.
    void SetShowsProgress(bool on) { m_showsProgress = on; }
    /// Ends the line that Progress rewrites.
    void EndProgress();
    /// What a report in JSON knew when a failure cut it off.
    void KeepReport(const QJsonObject &report) { m_keptReport = report; }
    const QJsonObject &KeptReport() const { return m_keptReport; }
    /// False once something that went to the standard output has not arrived there.
    bool IsOutputWhole() const { return m_isOutputWhole; }

private:
    QString m_tool;
    QString m_work;
    QJsonObject m_keptReport;
    bool m_isOutputWhole = true;
    bool m_showsProgress = true;
    QElapsedTimer m_sinceStart; ///< of the work
    QElapsedTimer m_sinceShown; ///< of the line on the terminal
};
