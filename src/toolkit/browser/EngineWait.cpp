#include "toolkit/browser/EngineWait.h"

#include <QEventLoop>

namespace {

/// The exit code of our own waking; the end of the program ends every loop with another one.
constexpr int wakeCode = 0x57616b65;
/// A held key begins a nested wait at each repeat; beyond this depth the newest one gives up at once.
constexpr int mostWaits = 4;

} // namespace

EngineWait::EngineWait() : m_state(std::make_shared<State>()) {}

EngineWait::~EngineWait()
{
    m_state->isGone = true;
    Wake();
}

bool EngineWait::Until(const std::function<bool()> &condition)
{
    const std::shared_ptr<State> state = m_state;
    if (state->loops.size() >= mostWaits)
        return false;
    const quint64 page = state->page;
    const quint64 turn = ++state->turn;
    return Run(state, condition, [state, page, turn] { return state->page != page || state->turn != turn; });
}

void EngineWait::Wake()
{
    WakeLoops(*m_state);
}

void EngineWait::Renew()
{
    ++m_state->page;
    Wake();
}

void EngineWait::WakeLoops(const State &state)
{
    for (QEventLoop *loop : state.loops)
        loop->exit(wakeCode);
}

bool EngineWait::Run(const std::shared_ptr<State> &state, const std::function<bool()> &condition,
                     const std::function<bool()> &isDropped)
{
    while (!state->isGone && !isDropped()) {
        if (condition())
            return true;
        QEventLoop loop;
        state->loops.append(&loop);
        const int code = loop.exec();
        state->loops.removeOne(&loop);
        if (code != wakeCode)
            return false;
    }
    return false;
}
