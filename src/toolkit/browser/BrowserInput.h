#pragma once

#include <QObject>
#include <QPoint>
#include <QPointer>

#include <functional>

class QKeyEvent;
class QMouseEvent;
class QWebEngineView;
class QWheelEvent;

/// Watches the widget in which the engine takes its input: keeps keys and gestures from the engine that would make it
/// act behind the program's back, and tells of presses, the zoom wheel and the menu keys.
class BrowserInput : public QObject
{
    Q_OBJECT
public:
    explicit BrowserInput(QWebEngineView *view);

    /// Follows the engine's widget, which it replaces now and then.
    void Attach();

    /// A press of the left or right button, in the view's coordinates; told in the turn after the press.
    std::function<void(Qt::MouseButton, Qt::KeyboardModifiers, QPoint)> OnPress;
    std::function<void(int steps)> OnZoomWheel;
    /// The position in the view's coordinates.
    std::function<void(QPoint)> OnMenuKey;
    /// F3 and Shift+F3.
    std::function<void(bool isBackward)> OnFindKey;

    /// What was held at the last press.
    Qt::KeyboardModifiers PressModifiers() const { return m_pressModifiers; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// True keeps the event from the engine.
    bool KeyPressed(QKeyEvent *event);
    bool MousePressed(QWidget *widget, QMouseEvent *event);
    bool WheelTurned(QWheelEvent *event);
    QPoint MenuPoint() const;
    /// Tells in the next turn of the loop, when the engine has had the event.
    void Tell(std::function<void()> call);

    QWebEngineView *m_view;
    QPointer<QWidget> m_watched;
    Qt::KeyboardModifiers m_pressModifiers;
    int m_wheelRest = 0;
};
