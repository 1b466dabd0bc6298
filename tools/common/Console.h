#pragma once

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
    /// How far a long work is. On a terminal one line is rewritten; elsewhere the first call of a work prints a line.
    void Progress(const QString &work, qsizetype done, qsizetype total);
    /// Ends the line that Progress rewrites.
    void EndProgress();

private:
    QString m_tool;
    QString m_work;
};
