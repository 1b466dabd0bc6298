#include "toolkit/browser/BrowserInput.h"

#include "toolkit/program/Guard.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QTimer>
#include <QWebEngineView>
#include <QWheelEvent>

namespace {

constexpr int wheelStep = 120; // eighths of a degree in one notch

/// Keys by which Chromium would open, reload or leave a page.
bool IsEngineCommand(const QKeyEvent &event)
{
    const auto modifiers = event.modifiers() & ~Qt::KeypadModifier;
    switch (event.key()) {
    case Qt::Key_F5:
    case Qt::Key_Backspace:
    case Qt::Key_Back:
    case Qt::Key_Forward:
    case Qt::Key_Reload:
    case Qt::Key_Refresh:
    case Qt::Key_Stop:
    case Qt::Key_HomePage:
        return true;
    case Qt::Key_Left:
    case Qt::Key_Right:
        return modifiers == Qt::AltModifier;
    case Qt::Key_N:
    case Qt::Key_R:
    case Qt::Key_O:
    case Qt::Key_T:
    case Qt::Key_W:
    case Qt::Key_U:
    case Qt::Key_J:
    case Qt::Key_Plus:
    case Qt::Key_Minus:
    case Qt::Key_Equal:
    case Qt::Key_0:
        return modifiers.testFlag(Qt::ControlModifier);
    default:
        return false;
    }
}

bool IsMenuKey(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Menu || (event.key() == Qt::Key_F10 && event.modifiers() == Qt::ShiftModifier);
}

} // namespace

BrowserInput::BrowserInput(QWebEngineView *view) : QObject(view), m_view(view) {}

void BrowserInput::Attach()
{
    QWidget *widget = m_view->focusProxy();
    if (!widget || widget == m_watched)
        return;
    if (m_watched)
        m_watched->removeEventFilter(this);
    m_watched = widget;
    widget->installEventFilter(this);
}

bool BrowserInput::eventFilter(QObject *watched, QEvent *event)
{
    if ((event->type() == QEvent::KeyPress || event->type() == QEvent::MouseButtonPress) && OnInput)
        OnInput();
    switch (event->type()) {
    case QEvent::KeyPress:
        return KeyPressed(static_cast<QKeyEvent *>(event));
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return MousePressed(static_cast<QWidget *>(watched), static_cast<QMouseEvent *>(event));
    case QEvent::Wheel:
        return WheelTurned(static_cast<QWheelEvent *>(event));
    case QEvent::NativeGesture:
        return static_cast<QNativeGestureEvent *>(event)->gestureType() == Qt::ZoomNativeGesture;
    case QEvent::ContextMenu:
        // The key press has been reported already.
        return static_cast<QContextMenuEvent *>(event)->reason() == QContextMenuEvent::Keyboard;
    default:
        return false;
    }
}

bool BrowserInput::KeyPressed(QKeyEvent *event)
{
    if (IsMenuKey(*event)) {
        m_pressModifiers = event->modifiers();
        Tell([this, point = MenuPoint()] {
            if (OnMenuKey)
                OnMenuKey(point);
        });
        return true;
    }
    if (event->key() == Qt::Key_Escape && OnEscape) {
        bool isUsed = false;
        RunGuarded([&] { isUsed = OnEscape(); });
        return isUsed;
    }
    return IsEngineCommand(*event);
}

bool BrowserInput::MousePressed(QWidget *widget, QMouseEvent *event)
{
    const Qt::MouseButton button = event->button();
    if (button == Qt::BackButton || button == Qt::ForwardButton)
        return true;
    if (button != Qt::LeftButton && button != Qt::RightButton)
        return false;
    m_pressModifiers = event->modifiers();
    const QPoint point = widget->mapTo(m_view, event->position().toPoint());
    Tell([this, button, modifiers = m_pressModifiers, point] {
        if (OnPress)
            OnPress(button, modifiers, point);
    });
    return false;
}

bool BrowserInput::WheelTurned(QWheelEvent *event)
{
    if (!event->modifiers().testFlag(Qt::ControlModifier)) {
        m_wheelRest = 0;
        return false;
    }
    m_wheelRest += event->angleDelta().y();
    const int steps = m_wheelRest / wheelStep;
    m_wheelRest -= steps * wheelStep;
    if (steps != 0) {
        Tell([this, steps] {
            if (OnZoomWheel)
                OnZoomWheel(steps);
        });
    }
    return true;
}

QPoint BrowserInput::MenuPoint() const
{
    const QPoint mouse = m_view->mapFromGlobal(QCursor::pos());
    return m_view->rect().contains(mouse) ? mouse : m_view->rect().center();
}

void BrowserInput::Tell(std::function<void()> call)
{
    QTimer::singleShot(0, this, [call = std::move(call)] { RunGuarded(call); });
}
