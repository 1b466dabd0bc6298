#include "Processes.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QProcessEnvironment>

#include <chrono>

namespace {

constexpr int LineTimeout = 60000;

qint64 Now()
{
    return std::chrono::steady_clock::now().time_since_epoch().count();
}

/// Parent of a process by /proc/PID/stat; the name before it may hold blanks and brackets.
qint64 ParentOf(const QString &pid)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray line = file.readAll();
    return line.mid(line.lastIndexOf(')') + 2).split(' ').value(1).toLongLong();
}

qint64 ProportionalKilobytes(const QString &pid)
{
    QFile file(QStringLiteral("/proc/%1/smaps_rollup").arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray &line : lines)
        if (line.startsWith("Pss:"))
            return line.mid(4).trimmed().split(' ').first().toLongLong();
    return 0;
}

} // namespace

ProbedProcess::ProbedProcess(const QString &program, const QStringList &arguments, const QString &configFolder)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_GENERIC_PLUGINS"), QStringLiteral("lumivara-probe"));
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), configFolder);
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_startNanoseconds = Now();
    m_process.start(program, arguments);
    m_process.waitForStarted();
}

ProbedProcess::~ProbedProcess()
{
    m_process.kill();
    m_process.waitForFinished();
}

double ProbedProcess::WaitPainted()
{
    for (;;) {
        const QString line = ReadLine();
        if (line == u"painted")
            return static_cast<double>(Now() - m_startNanoseconds) / 1e6;
        if (line.isEmpty())
            return -1;
    }
}

QString ProbedProcess::ReadLine()
{
    QElapsedTimer clock;
    clock.start();
    while (!m_process.canReadLine())
        if (m_process.state() == QProcess::NotRunning || clock.elapsed() > LineTimeout || !m_process.waitForReadyRead())
            return {};
    return QString::fromUtf8(m_process.readLine()).trimmed();
}

void ProbedProcess::WriteLine(const QString &line)
{
    m_process.write(line.toUtf8() + '\n');
    m_process.waitForBytesWritten();
}

double ProbedProcess::Memory() const
{
    QHash<qint64, QList<qint64>> children;
    const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
    for (const QString &entry : entries)
        if (entry.at(0).isDigit())
            children[ParentOf(entry)].append(entry.toLongLong());
    qint64 kilobytes = 0;
    QList<qint64> pending{m_process.processId()};
    while (!pending.isEmpty()) {
        const qint64 pid = pending.takeLast();
        kilobytes += ProportionalKilobytes(QString::number(pid));
        pending += children.value(pid);
    }
    return static_cast<double>(kilobytes) / 1024;
}
