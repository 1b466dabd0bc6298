#include "toolkit/controls/CxButton.h"

#include "toolkit/controls/BarButton.h"

#include <QAction>
#include <QHelpEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QStyleOptionToolButton>
#include <QToolTip>

TcxButton::TcxButton(QWidget *parent) : QToolButton(parent)
{
    setAutoRaise(true);
    setFocusPolicy(Qt::TabFocus);
}

void TcxButton::SetAction(QAction *action)
{
    m_action = action;
    connect(action, &QAction::changed, this, &TcxButton::FollowAction);
    connect(this, &TcxButton::clicked, action, &QAction::trigger);
    FollowAction();
}

void TcxButton::FollowAction()
{
    setIcon(m_action->icon());
    setEnabled(m_action->isEnabled());
    if (text().isEmpty() && toolTip().isEmpty())
        setAccessibleName(m_action->text().trimmed());
}

void TcxButton::SetDropDownMenu(QMenu *menu)
{
    setPopupMode(MenuButtonPopup);
    setMenu(menu);
    FollowMouseAfter(*menu, *this);
}

bool TcxButton::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        if (!m_showHint)
            return true;
        if (toolTip().isEmpty() && m_action) {
            QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), HintOf(*m_action), this);
            return true;
        }
    }
    if (event->type() == QEvent::ToolTipChange && !toolTip().isEmpty())
        setAccessibleName(toolTip()); // screen readers can't read a picture
    return QToolButton::event(event);
}

void TcxButton::mousePressEvent(QMouseEvent *event)
{
    QStyleOptionToolButton option;
    initStyleOption(&option);
    const QRect arrow = style()->subControlRect(QStyle::CC_ToolButton, &option, QStyle::SC_ToolButtonMenu, this);
    if (menu() && event->button() == Qt::LeftButton && arrow.contains(event->position().toPoint())) {
        menu()->popup(event->globalPosition().toPoint());
        return;
    }
    QToolButton::mousePressEvent(event);
}

void TcxButton::keyPressEvent(QKeyEvent *event)
{
    if (menu() && (event->key() == Qt::Key_Down || event->key() == Qt::Key_F4)) {
        menu()->popup(mapToGlobal(rect().bottomLeft()));
        return;
    }
    QToolButton::keyPressEvent(event);
}
