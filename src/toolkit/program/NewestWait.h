#pragma once

#include <functional>

class QWidget;

/// For a window whose handler waits for a page, processing events, while newer rows may come: of such waits only one
/// stands, and it goes over to the newest row instead of bearing another. The window that owns it may be closed
/// meanwhile, and then lives until the wait ends.
class NewestWait
{
public:
    explicit NewestWait(QWidget &window) : m_window(window) {}

    /// Runs `wait`, and again while it was asked for meanwhile. Returns at once where one is running already. What
    /// `wait` throws passes through and ends it.
    void Run(const std::function<void()> &wait);
    /// Inside `wait`: nobody needs its result any more.
    bool IsOver() const;
    /// Call at the end of the window's close event: what waits below goes through the window on its way back.
    void WindowClosed();

private:
    QWidget &m_window;
    bool m_isRunning = false;
    bool m_isDue = false;
    bool m_isClosed = false;
    bool m_isDeletionDue = false;
};
