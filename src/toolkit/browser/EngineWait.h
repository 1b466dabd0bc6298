#pragma once

#include <QList>

#include <functional>
#include <memory>
#include <optional>

class QEventLoop;

/// Waits for Chromium by processing events. A wait belongs to the page at its start: it is dropped when another page
/// comes, or when the control or the program's event loop ends. Main thread only.
class EngineWait
{
public:
    EngineWait();
    ~EngineWait();
    EngineWait(const EngineWait &) = delete;
    EngineWait &operator=(const EngineWait &) = delete;

    /// Processes events until the condition holds, which is tested at each Wake(). False if the wait was dropped, or if
    /// another Until() began inside it; false at once if too many waits are nested.
    bool Until(const std::function<bool()> &condition);

    /// Calls `ask` with a function that takes Chromium's answer, and waits for it. A default value if the wait was
    /// dropped; a late answer is ignored.
    template <typename Value>
    Value For(const std::function<void(std::function<void(const Value &)>)> &ask);

    /// Lets all waits test their conditions.
    void Wake();
    /// Drops all waits, because another page is there.
    void Renew();

private:
    /// Shared by the waits and their owner, and outlives the owner.
    struct State
    {
        QList<QEventLoop *> loops;
        quint64 page = 0;
        quint64 turn = 0;
        bool isGone = false;
    };
    static void WakeLoops(const State &state);
    static bool Run(const std::shared_ptr<State> &state, const std::function<bool()> &condition,
                    const std::function<bool()> &isDropped);

    std::shared_ptr<State> m_state;
};

template <typename Value>
Value EngineWait::For(const std::function<void(std::function<void(const Value &)>)> &ask)
{
    const std::shared_ptr<State> state = m_state;
    const auto answer = std::make_shared<std::optional<Value>>();
    ask([state, answer](const Value &value) {
        *answer = value;
        WakeLoops(*state);
    });
    const quint64 page = state->page;
    Run(state, [answer] { return answer->has_value(); }, [state, page] { return state->page != page; });
    return answer->value_or(Value());
}
