#pragma once

#include "support/TestSupport.h"

#include <QMap>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>

/// A copy of the product folder that a test may damage, and settings of its own.
class ProductCopy
{
public:
    /// `name` is the folder's name: blanks, quotes and any letters are allowed.
    explicit ProductCopy(const QString &name = QStringLiteral("Lumivara"));

    QString Folder() const { return m_folder; }
    QString File(const QString &name) const { return m_folder + QLatin1Char('/') + name; }
    QString ConfigFolder() const { return m_scratch.Path(QStringLiteral("config")); }
    QString SettingsFile() const { return ConfigFolder() + QStringLiteral("/lumivara/registry.json"); }
    QString Scratch(const QString &name) const { return m_scratch.Path(name); }
    /// Lays down all the options that a start asks for, so that it opens the last text; `changed` over the usual ones.
    void WriteOptions(const QMap<QString, int> &changed = {}) const;
    /// An integer of the settings; 0 if there is none.
    int StoredOption(const QString &name) const;

private:
    ScratchFolder m_scratch;
    QString m_folder;
};

/// A script in the place of a program, which tells of each call when its work is done.
class StandIn
{
public:
    /// `work` is a command of the shell; nothing stands at `path`.
    explicit StandIn(const QString &path, const QByteArray &work = ":");
    ~StandIn();
    StandIn(const StandIn &) = delete;
    StandIn &operator=(const StandIn &) = delete;

    /// Waits for a call: the work's exit code and the arguments; empty if none comes.
    std::string NextCall();

private:
    int m_calls;
    QByteArray m_told;
};

/// One run of the real program on a copy, driven through the toolkit's plug-in door.
class ProgramRun
{
public:
    explicit ProgramRun(const ProductCopy &product);
    ~ProgramRun();

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    QStringList arguments;

    void Start();
    /// One command of the driver; its answer without "ok ", or a text that begins with "error".
    QString Send(const QString &command, int milliseconds = 40000);
    /// Commands that are each answered by a bare "ok", as the test expects.
    void Do(const QStringList &commands);
    /// Starts, and waits for the window and its page.
    void Open();
    /// Waits for the end; the exit code, -1 after a crash, -2 if it is still running.
    int ExitCode(int milliseconds = 30000);
    /// Closes the main window and answers the question with Yes.
    int Quit();
    qint64 ProcessId() const { return m_process.processId(); }
    QByteArray ErrorOutput() { return m_process.readAllStandardError(); }

private:
    QString m_executable;
    QProcess m_process;
};
