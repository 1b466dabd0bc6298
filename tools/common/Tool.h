#pragma once

#include <QStringList>

#include <span>
#include <stdexcept>

class Console;
class QCommandLineParser;
class QFile;

/// Exit codes of the tools.
namespace ExitCode {
inline constexpr int Clean = 0;
inline constexpr int Findings = 1;
inline constexpr int Failure = 2; // wrong usage, unreadable input, or an output that cannot be written
} // namespace ExitCode

/// Ends a verb with a message: something can't be read, written or understood.
class ToolError : public std::runtime_error
{
public:
    explicit ToolError(const QString &text) : std::runtime_error(text.toUtf8().constData()), m_text(text) {}
    const QString &Text() const { return m_text; }

private:
    QString m_text;
};

/// A verb of a tool. It gets the arguments after its name and returns the exit code; an exception ends the tool with a
/// message.
struct Verb
{
    const char16_t *name;
    const char16_t *summary; ///< empty for a verb that is not told of
    int (*run)(const QStringList &, Console &);
};

/// Opens a file named by the user for reading, if it is a regular file: a pipe or a device may never end.
/// Throws ToolError, which names it.
void OpenSource(QFile &file);

/// Runs the verb that the first argument names and returns the exit code. Never throws.
int RunTool(std::span<const Verb> verbs, const QStringList &arguments, Console &console);

/// Reads a verb's options; throws ToolError for unknown ones. True if only help was asked for, which is then printed
/// under `synopsis` ("check FILE").
bool ParseOrHelp(QCommandLineParser &parser, const QString &synopsis, const QStringList &arguments, Console &console);
