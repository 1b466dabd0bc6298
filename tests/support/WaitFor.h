#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

/// Runs a real event loop until the condition holds; false if it does not within `milliseconds`. QTest::qWaitFor polls
/// with processEvents instead, so that the loop never blocks and nothing bound to its blocking ever runs.
template <typename Condition>
[[nodiscard]] bool WaitFor(Condition condition, int milliseconds = 15000)
{
    QEventLoop loop;
    QTimer timer;
    QElapsedTimer clock;
    clock.start();
    bool holds = condition();
    QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
        holds = condition();
        if (holds || clock.elapsed() > milliseconds)
            loop.quit();
    });
    timer.start(5);
    if (!holds)
        loop.exec();
    return holds;
}
