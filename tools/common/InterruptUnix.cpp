#include "common/Interrupt.h"

#include "base/Messages.h"
#include "common/Leftover.h"
#include "common/StalledLock.h"
#include "common/Tool.h"

#include <QByteArray>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <mutex>
#include <thread>

#include <unistd.h>

namespace {

constexpr int Signals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};
/// Together less than the second after which an interrupted tool has to be gone.
constexpr timespec Grace{0, 600'000'000};

std::atomic<bool> wasInterrupted{false};
std::atomic<bool> isLastWordTaken{false};

void Say(const QByteArray &text)
{
    const QByteArray line = QByteArray(::program_invocation_short_name) + ": " + text + '\n';
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, line.constData(), size_t(line.size()));
}

[[noreturn]] void EndNow()
{
    const std::optional<QStringList> done = Leftover::RemoveAll();
    if (TakeLastWord()) {
        Say(!done             ? QByteArray("interrupted in the last step, which is done whole or not at all")
            : done->isEmpty() ? QByteArray("interrupted; the files are as they were")
                              : "interrupted; finished before: " + done->join(QStringLiteral(", ")).toUtf8());
    }
    ::_exit(ExitCode::Failure);
}

/// The thread's work.
void Watch(const sigset_t &watched)
{
    constexpr timespec betweenLooks{0, 500'000'000};
    StalledLock stalled;
    while (::sigtimedwait(&watched, nullptr, &betweenLooks) < 0) {
        if (const QString file = stalled.Look(); !file.isEmpty())
            Say("waiting for " + file.toUtf8() + ": another process holds it");
    }
    wasInterrupted = true;
    ::sigtimedwait(&watched, nullptr, &Grace);
    EndNow();
}

void StartWatching()
{
    std::signal(SIGPIPE, SIG_IGN);
    sigset_t watched;
    ::sigemptyset(&watched);
    for (const int signal : Signals) {
        struct sigaction action = {};
        if (::sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_IGN)
            ::sigaddset(&watched, signal);
    }
    // Blocked and not handled: the engine puts handlers of its own in the place of others.
    ::pthread_sigmask(SIG_BLOCK, &watched, nullptr);
    std::thread(Watch, watched).detach();
}

} // namespace

void NoteInterrupts()
{
    static std::once_flag isWatching;
    std::call_once(isWatching, StartWatching);
}

void LetInterruptsThrough()
{
    ::signal(SIGPIPE, SIG_DFL);
    sigset_t watched;
    ::sigemptyset(&watched);
    for (const int signal : Signals)
        ::sigaddset(&watched, signal);
    ::sigprocmask(SIG_UNBLOCK, &watched, nullptr);
}

bool WasInterrupted()
{
    return wasInterrupted;
}

void ThrowIfInterrupted()
{
    if (WasInterrupted())
        throw ToolError(Sentence({u"bị ngắt; các tệp vẫn như cũ", u"interrupted; the files are as they were"}));
}

bool TakeLastWord()
{
    return !isLastWordTaken.exchange(true);
}
