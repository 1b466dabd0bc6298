#pragma once

#include <functional>

class QWidget;

/// For a window whose handler waits for a page, processing events, while newer rows may arrive. Only one such wait runs
/// at a time; it restarts for the newest row, so that waits never nest. If its window is closed meanwhile, the window
/// is deleted when the wait ends.
class NewestWait
{
public:
    explicit NewestWait(QWidget &window) : m_window(window) {}

    /// Runs `wait`, and repeats it if it was called again meanwhile. Returns at once if one is running. Exceptions of
    /// `wait` pass through and end it.
    void Run(const std::function<void()> &wait);
    /// Inside `wait`: true if its result is no longer needed.
    bool IsOver() const;
    /// Call at the end of the window's close event: a wait further down the stack still uses the window when it
    /// returns.
    void WindowClosed();

private:
    QWidget &m_window;
    bool m_isRunning = false;
    bool m_isDue = false;
    bool m_isClosed = false;
    bool m_isDeletionDue = false;
};
