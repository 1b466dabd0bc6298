#include "common/Console.h"

#include "common/Interrupt.h"
#include "common/Terminal.h"

#include <QtGlobal>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

/// What steers a terminal, turns the direction of what follows, or begins a line where none is begun.
bool Steers(QChar c)
{
    const char16_t unit = c.unicode();
    return (unit < u' ' && unit != u'\n' && unit != u'\t') || (unit >= 0x7F && unit < 0xA0) || unit == 0x061C ||
           unit == 0x200E || unit == 0x200F || unit == QChar::LineSeparator || unit == QChar::ParagraphSeparator ||
           (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069);
}

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

QString Harmless(const QString &text)
{
    if (std::none_of(text.cbegin(), text.cend(), Steers))
        return text;
    QString harmless;
    harmless.reserve(text.size());
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar c = text[at];
        if (!Steers(c))
            harmless += c;
        else if (c == u'\r' && at + 1 < text.size() && text[at + 1] == u'\n')
            harmless += u' ';
        else
            harmless += u"\\u%1"_s.arg(ushort(c.unicode()), 4, 16, QLatin1Char('0'));
    }
    return harmless;
}

Console::Console(const QString &tool)
    : m_tool(tool), m_clock([timer = [] {
          QElapsedTimer started;
          started.start();
          return started;
      }()] { return timer.elapsed(); })
{}

void Console::Print(const QString &text)
{
    EndProgress();
    m_isOutputWhole = Write(stdout, Harmless(text)) && m_isOutputWhole;
}

void Console::PrintLine(const QString &line)
{
    Print(QString(line).replace(u"\r\n"_s, u" "_s).replace(u'\n', u' ') + u'\n');
}

void Console::Put(const QString &data)
{
    EndProgress();
    m_isOutputWhole = Write(stdout, OutputGoesToATerminal() ? Harmless(data) : data) && m_isOutputWhole;
}

void Console::PrintError(const QString &text)
{
    EndProgress();
    Write(stderr, Harmless(text));
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
        // It goes into some log, or nowhere.
        constexpr qint64 leastMilliseconds = 10'000;
        const qint64 now = m_clock();
        if (m_lastLine && now - *m_lastLine < leastMilliseconds)
            return;
        m_lastLine = now;
        Write(stderr, isNew ? u"%1: %2 %3\n"_s.arg(Harmless(work)).arg(total).arg(unit)
                            : u"%1: %2 of %3 %4\n"_s.arg(Harmless(work)).arg(done).arg(total).arg(unit));
        return;
    }
    constexpr qint64 restMilliseconds = 100;
    if (!isNew && done < total && m_sinceShown.elapsed() < restMilliseconds)
        return;
    m_sinceShown.start();
    constexpr auto clearRest = "\x1b[K";
    Write(stderr, u"\r%1: %2 of %3%4%5"_s.arg(Harmless(work))
                      .arg(done)
                      .arg(total)
                      .arg(TimeLeft(m_sinceStart.elapsed(), done, total), QLatin1StringView(clearRest)));
}

void Console::EndProgress()
{
    if (!m_work.isEmpty() && ErrorsGoToATerminal())
        Write(stderr, u"\n"_s);
    m_work.clear();
}
