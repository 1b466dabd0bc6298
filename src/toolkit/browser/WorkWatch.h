#pragma once

#include <QtGlobal>

#include <atomic>
#include <functional>

/// What long work outside the window's thread throws out of Step() once it is cancelled. Not an std::exception, so that
/// no library on the way takes it for a failure of its own.
struct WorkCancelled
{};

/// Between a piece of long work and those who wait for it. Cancel() may be called from any thread.
class WorkWatch
{
public:
    /// Called in the working thread, whenever the whole number changes.
    std::function<void(int percent)> OnPercent;

    void Cancel() { m_isCancelled = true; }
    /// The work tells that it has done so much of all. Throws WorkCancelled.
    void Step(qint64 done, qint64 all)
    {
        if (m_isCancelled)
            throw WorkCancelled();
        const int percent = all > 0 ? static_cast<int>(done * 100 / all) : 0;
        if (percent == m_percent)
            return;
        m_percent = percent;
        if (OnPercent)
            OnPercent(percent);
    }

private:
    std::atomic<bool> m_isCancelled = false;
    int m_percent = -1;
};
