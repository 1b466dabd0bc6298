#include "common/Console.h"

#include "common/Interrupt.h"
#include "common/Terminal.h"

#include <QtGlobal>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

bool Write(std::FILE *stream, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    const size_t written = std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    return std::fflush(stream) == 0 && written == size_t(bytes.size());
}

/// ", about 2 min left": told once the work has shown its pace, and as long as it matters.
QString TimeLeft(qint64 elapsedMilliseconds, qsizetype done, qsizetype total)
{
    constexpr qint64 paceMilliseconds = 2000;
    constexpr qint64 minute = 60;
    if (elapsedMilliseconds < paceMilliseconds || done <= 0 || done >= total)
        return {};
    const qint64 seconds = elapsedMilliseconds * (total - done) / done / 1000 + 1;
    return seconds < 2 * minute ? u", about %1 s left"_s.arg(seconds)
                                : u", about %1 min left"_s.arg((seconds + minute - 1) / minute);
}

} // namespace

void Console::Print(const QString &text)
{
    EndProgress();
    m_isOutputWhole = Write(stdout, text) && m_isOutputWhole;
}

void Console::PrintError(const QString &text)
{
    EndProgress();
    Write(stderr, text);
}

void Console::Error(const QString &message)
{
    PrintError(m_tool + u": "_s + message + u'\n');
}

void Console::Progress(const QString &work, qsizetype done, qsizetype total, const QString &unit)
{
    ThrowIfInterrupted();
    if (m_progressTaker)
        return m_progressTaker(work, done, total, unit);
    if (!m_showsProgress)
        return;
    const bool isNew = m_work != work;
    if (isNew) {
        EndProgress();
        m_work = work;
        m_sinceStart.start();
        m_sinceShown.start();
    }
    if (!ErrorsGoToATerminal()) {
        if (isNew)
            Write(stderr, u"%1: %2 %3\n"_s.arg(work).arg(total).arg(unit));
        return;
    }
    constexpr qint64 restMilliseconds = 100;
    if (!isNew && done < total && m_sinceShown.elapsed() < restMilliseconds)
        return;
    m_sinceShown.start();
    constexpr auto clearRest = "\x1b[K";
    Write(stderr, u"\r%1: %2 of %3%4%5"_s.arg(work).arg(done).arg(total).arg(
                      TimeLeft(m_sinceStart.elapsed(), done, total), QLatin1StringView(clearRest)));
}

void Console::EndProgress()
{
    if (!m_work.isEmpty() && ErrorsGoToATerminal())
        Write(stderr, u"\n"_s);
    m_work.clear();
}
