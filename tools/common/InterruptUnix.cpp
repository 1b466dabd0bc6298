#include "common/Interrupt.h"

#include "common/Tool.h"

#include <csignal>

namespace {

volatile std::sig_atomic_t wasInterrupted = 0;

extern "C" void Note(int signal)
{
    if (wasInterrupted)
        std::signal(signal, SIG_DFL), std::raise(signal);
    wasInterrupted = 1;
}

} // namespace

void NoteInterrupts()
{
    std::signal(SIGINT, Note);
    std::signal(SIGTERM, Note);
    std::signal(SIGHUP, Note);
}

bool WasInterrupted()
{
    return wasInterrupted != 0;
}

void ThrowIfInterrupted()
{
    if (WasInterrupted())
        throw ToolError(QStringLiteral("interrupted; the files are as they were"));
}
