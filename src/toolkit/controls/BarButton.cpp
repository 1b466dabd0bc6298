#include "toolkit/controls/BarButton.h"

#include <QAction>
#include <QCoreApplication>
#include <QCursor>
#include <QEvent>
#include <QMenu>
#include <QToolButton>

QString HintOf(const QAction &action)
{
    QString caption = action.text().trimmed();
    caption.remove(u'&');
    const QString key = action.shortcut().toString(QKeySequence::NativeText);
    return key.isEmpty() ? caption : QStringLiteral("%1 (%2)").arg(caption, key);
}

void SetBarAction(QToolButton &button, QAction &action)
{
    button.setDefaultAction(&action);
    // The button takes over the action's hint at each change; without one of its own that is the caption.
    const auto showHint = [&button, &action] {
        if (action.toolTip() == action.iconText())
            button.setToolTip(HintOf(action));
    };
    showHint();
    QObject::connect(&action, &QAction::changed, &button, showHint);
}

void SetBarMenu(QToolButton &button, QMenu &menu)
{
    button.setMenu(&menu);
    FollowMouseAfter(menu, button);
}

void FollowMouseAfter(QMenu &menu, QToolButton &button)
{
    const auto follow = [&button] {
        if (button.rect().contains(button.mapFromGlobal(QCursor::pos())))
            return;
        button.setAttribute(Qt::WA_UnderMouse, false);
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(&button, &leave);
        button.update();
    };
    // The menu is still on the screen when it says that it hides.
    QObject::connect(&menu, &QMenu::aboutToHide, &button, follow, Qt::QueuedConnection);
}
