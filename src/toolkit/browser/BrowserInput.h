#pragma once

#include <QObject>
#include <QPoint>
#include <QPointer>

#include <functional>

class QKeyEvent;
class QMouseEvent;
class QWebEngineView;
class QWheelEvent;

/// Filters the events of Chromium's input widget: blocks keys and gestures by which Chromium would navigate on its own,
/// and reports presses, the zoom wheel and the menu keys.
class BrowserInput : public QObject
{
    Q_OBJECT
public:
    explicit BrowserInput(QWebEngineView *view);

    /// Filters Chromium's current input widget; call again when it has been replaced.
    void Attach();

    /// A press of the left or right button, in the view's coordinates; called in the next turn of the event loop.
    std::function<void(Qt::MouseButton, Qt::KeyboardModifiers, QPoint)> OnPress;
    std::function<void(int steps)> OnZoomWheel;
    /// The position in the view's coordinates.
    std::function<void(QPoint)> OnMenuKey;
    /// Any key or button, before Chromium gets it.
    std::function<void()> OnInput;
    /// Escape; true if it is used up.
    std::function<bool()> OnEscape;

    /// The modifiers at the last press.
    Qt::KeyboardModifiers PressModifiers() const { return m_pressModifiers; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// True blocks the event.
    bool KeyPressed(QKeyEvent *event);
    bool MousePressed(QWidget *widget, QMouseEvent *event);
    bool WheelTurned(QWheelEvent *event);
    QPoint MenuPoint() const;
    /// Calls in the next turn of the event loop, after Chromium has had the event.
    void Tell(std::function<void()> call);

    QWebEngineView *m_view;
    QPointer<QWidget> m_watched;
    Qt::KeyboardModifiers m_pressModifiers;
    int m_wheelRest = 0;
};
