#include "toolkit/program/MenuKey.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QWebEngineView>

namespace {

bool IsInPage(const QWidget *widget)
{
    while (widget && !qobject_cast<const QWebEngineView *>(widget))
        widget = widget->parentWidget();
    return widget;
}

class MenuKey : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::KeyPress)
            return false;
        const auto *key = static_cast<QKeyEvent *>(event);
        // First, before touching the object: a page under destruction sends itself a key.
        if (key->key() != Qt::Key_F10 || key->modifiers() != Qt::ShiftModifier)
            return false;
        auto *control = qobject_cast<QWidget *>(watched);
        // Pages handle the key themselves.
        if (!control || IsInPage(control))
            return false;
        const QPoint point = control->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
        QContextMenuEvent request(QContextMenuEvent::Keyboard, point, control->mapToGlobal(point));
        QApplication::sendEvent(control, &request);
        return request.isAccepted();
    }
};

} // namespace

void InstallMenuKey()
{
    qApp->installEventFilter(new MenuKey(qApp));
}
