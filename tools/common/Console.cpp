#include "common/Console.h"

#include <QtGlobal>

#include <cstdio>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

namespace {

void Write(std::FILE *stream, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fflush(stream);
}

bool ErrorsGoToATerminal()
{
#ifdef Q_OS_UNIX
    return isatty(STDERR_FILENO) != 0;
#else
    return false;
#endif
}

} // namespace

void Console::Print(const QString &text)
{
    EndProgress();
    Write(stdout, text);
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

void Console::Progress(const QString &work, qsizetype done, qsizetype total)
{
    if (ErrorsGoToATerminal()) {
        if (m_work != work)
            EndProgress();
        Write(stderr, u"\r%1: %2 of %3"_s.arg(work).arg(done).arg(total));
    } else if (m_work != work) {
        Write(stderr, u"%1: %2 rows\n"_s.arg(work).arg(total));
    }
    m_work = work;
}

void Console::EndProgress()
{
    if (!m_work.isEmpty() && ErrorsGoToATerminal())
        Write(stderr, u"\n"_s);
    m_work.clear();
}
