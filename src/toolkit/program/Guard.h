#pragma once

#include <QObject>

#include <functional>
#include <type_traits>
#include <utility>

/// Runs a handler and reports what it throws in the general message box; a silent abort passes without a word.
/// Each guard reports for itself, because toolkit code between two of them must never see an exception; a routine that
/// is to pass a failure on to its caller calls handlers directly and not through a signal.
/// True if the handler ended without a failure.
bool RunGuarded(const std::function<void()> &handler);

/// The same for a handler that takes the arguments, or none of them.
template <typename Handler, typename... Arguments>
void CallGuarded(const Handler &handler, Arguments &&...arguments)
{
    if constexpr (std::is_invocable_v<const Handler &, Arguments...>)
        RunGuarded([&] { handler(std::forward<Arguments>(arguments)...); });
    else
        RunGuarded(handler);
}

/// Connects a signal to a handler through the guard. The connection ends with `context`.
template <typename Sender, typename Signal, typename Handler>
QMetaObject::Connection ConnectGuarded(const Sender *sender, Signal signal, QObject *context, Handler handler)
{
    // The toolkit tries the call with ever fewer arguments to learn how many the handler takes.
    auto guarded = [handler = std::move(handler)](auto &&...args) requires(
        std::is_invocable_v<const Handler &, decltype(args)...> || std::is_invocable_v<const Handler &>)
    {
        CallGuarded(handler, std::forward<decltype(args)>(args)...);
    };
    return QObject::connect(sender, signal, context, std::move(guarded));
}

/// While one lives, guards swallow what they catch without a word: for a routine none of whose failures is told, those
/// of controls that it makes fetch included. No events may be processed meanwhile.
class QuietGuards
{
public:
    QuietGuards();
    QuietGuards(const QuietGuards &) = delete;
    QuietGuards &operator=(const QuietGuards &) = delete;
    ~QuietGuards();
};
