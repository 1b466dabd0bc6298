#include "toolkit/program/WindowPlace.h"

#include <QApplication>
#include <QEvent>
#include <QScreen>
#include <QStyle>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace {

enum class Over { Screen, Owner, Nothing };

/// The frame on show; null if there is none yet.
QMargins ShownFrame(const QWidget &window)
{
    const QWindow *handle = window.windowHandle();
    const QMargins frame = handle && window.isVisible() ? handle->frameMargins() : QMargins();
    // Until the desktop has drawn the frame, Qt reports none or a wrong one.
    const bool isReal = frame.top() > 0 && std::min({frame.left(), frame.right(), frame.bottom()}) >= 0;
    return isReal ? frame : QMargins();
}

QMargins ExpectedFrame(const QWidget &window)
{
    QMargins frame = ShownFrame(window);
    const QWidgetList others = QApplication::topLevelWidgets();
    for (auto other = others.begin(); frame.isNull() && other != others.end(); ++other)
        frame = ShownFrame(**other);
    return frame.isNull() ? QMargins(0, window.style()->pixelMetric(QStyle::PM_TitleBarHeight), 0, 0) : frame;
}

/// Moves the frame there. A widget hears of the frame drawn around it with its next move alone; until then it takes
/// its own place for the frame's, so the shown window is moved by its handle.
void MoveFrame(QWidget &window, QPoint place)
{
    const QMargins frame = ShownFrame(window);
    if (!frame.isNull())
        window.windowHandle()->setPosition(place + QPoint(frame.left(), frame.top()));
    else if (place != window.pos())
        window.move(place);
}

bool IsNormal(const QWidget &window)
{
    return !window.isMinimized() && !window.isMaximized() && !window.isFullScreen();
}

void Place(QWidget &window, Over over)
{
    if (!IsNormal(window))
        return;
    const bool isPlaced = over != Over::Nothing || window.isVisible();
    window.resize(window.size().boundedTo(RoomOnScreen(window)));
    if (!isPlaced)
        return; // the desktop chooses the place
    const QRect desk = window.screen()->availableGeometry();
    const QWidget *owner = window.parentWidget() ? window.parentWidget()->window() : nullptr;
    QRect place(window.pos(), window.size().grownBy(ExpectedFrame(window)));
    if (over == Over::Owner && owner)
        place.moveCenter(owner->frameGeometry().center());
    else if (over != Over::Nothing)
        place.moveCenter(desk.center());
    place.moveRight(std::min(place.right(), desk.right()));
    place.moveBottom(std::min(place.bottom(), desk.bottom()));
    place.moveLeft(std::max(place.left(), desk.left()));
    place.moveTop(std::max(place.top(), desk.top()));
    MoveFrame(window, place.topLeft());
}

/// Places a window again when its frame is known, and ends then: later the reader may have moved it.
class FrameWatch : public QObject
{
public:
    FrameWatch(QWidget &window, Over over) : QObject(&window), m_window(window), m_over(over)
    {
        window.installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *) override
    {
        if (FrameOf(m_window).isNull())
            return false;
        watched->removeEventFilter(this);
        QMetaObject::invokeMethod(
            this,
            [this] {
                Place(m_window, m_over);
                deleteLater();
            },
            Qt::QueuedConnection);
        return false;
    }

private:
    QWidget &m_window;
    const Over m_over;
};

void PlaceTwice(QWidget &window, Over over)
{
    Place(window, over);
    new FrameWatch(window, over);
}

} // namespace

QMargins FrameOf(const QWidget &window)
{
    return IsNormal(window) ? ShownFrame(window) : QMargins();
}

QSize RoomOnScreen(const QWidget &window)
{
    return window.screen()->availableSize().shrunkBy(ExpectedFrame(window));
}

void CentreOnScreen(QWidget &window)
{
    PlaceTwice(window, Over::Screen);
}

void CentreOnOwner(QWidget &window)
{
    PlaceTwice(window, Over::Owner);
}

void KeepOnScreen(QWidget &window)
{
    PlaceTwice(window, Over::Nothing);
}
