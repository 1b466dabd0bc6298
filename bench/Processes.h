#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

/// A program of ours run beside the measuring one, with the probe loaded.
class ProbedProcess
{
public:
    /// Starts at once. `configFolder` is the settings folder it sees.
    ProbedProcess(const QString &program, const QStringList &arguments, const QString &configFolder);
    ~ProbedProcess();

    /// Milliseconds from the start of the process until it printed "painted"; -1 if it never did.
    double WaitPainted();
    /// The next line it prints; empty after 60 s.
    QString ReadLine();
    void WriteLine(const QString &line);
    /// Proportional set size of the process and all that it started, in MB.
    double Memory() const;

private:
    QProcess m_process;
    qint64 m_startNanoseconds = 0;
};
