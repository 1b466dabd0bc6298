#include "lumivara-data/sealed/SealedStream.h"

#include "common/Report.h"
#include "common/Tool.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

SealedStream::SealedStream() : m_output(::dup(STDOUT_FILENO))
{
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    ::dup2(nowhere, STDOUT_FILENO);
    ::close(nowhere);
    m_sinceProgress.start();
}

void SealedStream::Write(const Frame &frame)
{
    const QByteArray bytes = frame.Encoded();
    for (qsizetype done = 0; done < bytes.size();) {
        const ssize_t written = ::write(m_output, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            throw ToolError(QStringLiteral("nobody listens any more"));
        done += written;
    }
}

void SealedStream::Row(const QString &table, const QList<QVariant> &values)
{
    Write({Frame::Kind::Row, QList<QVariant>{table} + values});
}

void SealedStream::Value(const QString &key, const QString &value)
{
    Write({Frame::Kind::Value, {key, value}});
}

void SealedStream::Send(const Report &report)
{
    for (const auto &[place, fault] : report.Findings())
        Write({Frame::Kind::Finding, {place, fault}});
    Write({Frame::Kind::Untold, {report.FindingCount() - report.Findings().size()}});
    for (const auto &[place, change] : report.Notes())
        Write({Frame::Kind::Note, {place, change}});
    for (const auto &[what, number] : report.Counts())
        Write({Frame::Kind::Count, {what, number}});
}

void SealedStream::Progress(const QString &work, qsizetype done, qsizetype total, const QString &unit)
{
    constexpr qint64 restMilliseconds = 50;
    if (work == m_work && done < total && m_sinceProgress.elapsed() < restMilliseconds)
        return;
    m_work = work;
    m_sinceProgress.start();
    Write({Frame::Kind::Progress, {work, done, total, unit}});
}

void SealedStream::Failure(const QString &text)
{
    Write({Frame::Kind::Failure, {text}});
}

void SealedStream::Done()
{
    Write({Frame::Kind::Done});
}
