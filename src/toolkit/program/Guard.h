#pragma once

#include <QObject>

#include <functional>
#include <type_traits>
#include <utility>

/// Runs a handler and shows what it throws in the general message box; a silent abort is not shown.
/// Nested guards report each by itself, because Qt's code between them must never see an exception. A routine that must
/// pass a failure to its caller calls handlers directly and not through a signal.
/// True if the handler did not fail.
bool RunGuarded(const std::function<void()> &handler);

/// The same for a handler that takes all of the arguments or none.
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
    // Qt tries the call with ever fewer arguments to find out how many the handler takes.
    auto guarded = [handler = std::move(handler)](auto &&...args)
        requires(std::is_invocable_v<const Handler &, decltype(args)...> || std::is_invocable_v<const Handler &>)
    { CallGuarded(handler, std::forward<decltype(args)>(args)...); };
    return QObject::connect(sender, signal, context, std::move(guarded));
}

/// While an instance exists, guards drop failures silently: for a routine whose failures are deliberately not reported,
/// including those of controls that it makes fetch. No events may be processed meanwhile.
class QuietGuards
{
public:
    QuietGuards();
    QuietGuards(const QuietGuards &) = delete;
    QuietGuards &operator=(const QuietGuards &) = delete;
    ~QuietGuards();
};
