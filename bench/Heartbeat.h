#pragma once

#include "Measures.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <functional>

/// The longest time for which the window's thread did not come back to its event loop.
class Heartbeat
{
public:
    Heartbeat()
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { Beat(); });
        m_timer.setTimerType(Qt::PreciseTimer);
        m_clock.start();
        m_timer.start(1);
    }
    double Worst()
    {
        Beat();
        return m_worst;
    }

private:
    void Beat()
    {
        m_worst = std::max(m_worst, Milliseconds(m_clock));
        m_clock.restart();
    }
    QTimer m_timer;
    QElapsedTimer m_clock;
    double m_worst = 0;
};

/// Lets the event loop run until the condition holds.
inline void WaitUntil(const std::function<bool()> &condition)
{
    QEventLoop loop;
    constexpr int most = 120000;
    QTimer::singleShot(most, &loop, [] { qFatal("what was waited for never came"); });
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (condition())
            loop.quit();
    });
    poll.start(5);
    loop.exec();
}
