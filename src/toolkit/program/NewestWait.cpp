#include "toolkit/program/NewestWait.h"

#include <QScopeGuard>
#include <QWidget>

#include <utility>

void NewestWait::Run(const std::function<void()> &wait)
{
    m_isDue = true;
    if (std::exchange(m_isRunning, true))
        return;
    m_isClosed = false;
    const auto end = qScopeGuard([this] {
        m_isRunning = false;
        if (std::exchange(m_isDeletionDue, false))
            m_window.deleteLater();
    });
    while (std::exchange(m_isDue, false) && !m_isClosed)
        wait();
}

bool NewestWait::IsOver() const
{
    return m_isDue || m_isClosed;
}

void NewestWait::WindowClosed()
{
    if (!m_isRunning)
        return;
    m_isClosed = true;
    m_isDeletionDue = m_window.testAttribute(Qt::WA_DeleteOnClose);
    m_window.setAttribute(Qt::WA_DeleteOnClose, false);
}
