#pragma once

#include <QList>

#include <functional>
#include <memory>
#include <optional>

class QEventLoop;

/// Waits for the engine by processing events. A wait belongs to the page that stands when it begins: it is dropped when
/// another page, the control or the program's event loop goes. Main thread only.
class EngineWait
{
public:
    EngineWait();
    ~EngineWait();
    EngineWait(const EngineWait &) = delete;
    EngineWait &operator=(const EngineWait &) = delete;

    /// Processes events until the condition holds, which is tested at each Wake(). False when the wait was dropped,
    /// also when another Until() began inside it, or at once when too many waits stand upon each other.
    bool Until(const std::function<bool()> &condition);

    /// Calls `ask` with a function that takes the engine's answer, and waits for that. A default value when the wait
    /// was dropped; the answer is then ignored.
    template <typename Value>
    Value For(const std::function<void(std::function<void(const Value &)>)> &ask);

    /// Lets all waits test their conditions.
    void Wake();
    /// Another page stands now: drops all waits.
    void Renew();

private:
    /// What waits share with their owner, and what survives it.
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
    Run(
        state, [answer] { return answer->has_value(); }, [state, page] { return state->page != page; });
    return answer->value_or(Value());
}
