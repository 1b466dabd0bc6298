#include "imports/ImportRun.h"

#include "toolkit/program/Guard.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int PatienceMilliseconds = 5000;
constexpr qsizetype MostErrors = 1 << 20; ///< bytes of a line

} // namespace

ImportRun::ImportRun(QObject *parent) : QObject(parent)
{
    m_process.setStandardInputFile(QProcess::nullDevice());
    m_patience.setSingleShot(true);
    m_patience.setInterval(PatienceMilliseconds);
    ConnectGuarded(&m_patience, &QTimer::timeout, this, [this] { m_process.kill(); });
    ConnectGuarded(&m_process, &QProcess::readyReadStandardError, this, [this] { TakeErrors(); });
    ConnectGuarded(&m_process, &QProcess::finished, this, [this] { TakeEnd(); });
    ConnectGuarded(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            TakeEnd();
    });
}

ImportRun::~ImportRun()
{
    m_process.disconnect(this);
    if (!IsRunning())
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(PatienceMilliseconds))
        m_process.kill();
    m_process.waitForFinished();
}

void ImportRun::Start(const ImportJob &job)
{
    m_isCancelled = false;
    m_errors.clear();
    m_process.start(job.programFolder + u"lumivara-data"_s, job.Arguments(), QIODevice::ReadOnly);
}

void ImportRun::Cancel()
{
    if (!IsRunning())
        return;
    m_isCancelled = true;
    m_process.terminate();
    m_patience.start();
}

void ImportRun::TakeErrors()
{
    m_errors += m_process.readAllStandardError();
    std::optional<ImportProgress> newest;
    for (qsizetype end; (end = m_errors.indexOf('\n')) >= 0; m_errors.remove(0, end + 1)) {
        if (const auto progress = ProgressOf(m_errors.first(end)))
            newest = progress;
    }
    if (m_errors.size() > MostErrors)
        m_errors.clear();
    if (newest)
        emit Progressed(*newest);
}

void ImportRun::TakeEnd()
{
    m_patience.stop();
    constexpr int crashed = -1;
    const bool isWhole = m_process.exitStatus() == QProcess::NormalExit && m_process.error() != QProcess::FailedToStart;
    const ImportReport report = ReportOf(m_process.readAllStandardOutput(), isWhole ? m_process.exitCode() : crashed);
    emit Ended(isWhole ? report : ImportReport(), m_isCancelled && !report.isDone);
}
