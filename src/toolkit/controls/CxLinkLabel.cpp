#include "toolkit/controls/CxLinkLabel.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

TcxLinkLabel::TcxLinkLabel(QWidget *parent) : TcxLabel(parent)
{
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
}

void TcxLinkLabel::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        emit Click();
    event->accept();
}

void TcxLinkLabel::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        if (!event->isAutoRepeat())
            emit Click();
        break;
    default:
        TcxLabel::keyPressEvent(event);
    }
}

void TcxLinkLabel::focusInEvent(QFocusEvent *event)
{
    TcxLabel::focusInEvent(event);
    update();
}

void TcxLinkLabel::focusOutEvent(QFocusEvent *event)
{
    TcxLabel::focusOutEvent(event);
    update();
}

void TcxLinkLabel::paintEvent(QPaintEvent *event)
{
    TcxLabel::paintEvent(event);
    if (!hasFocus())
        return;
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.backgroundColor = palette().color(QPalette::Window);
    QStylePainter(this).drawPrimitive(QStyle::PE_FrameFocusRect, option);
}
