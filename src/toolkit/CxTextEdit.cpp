#include "toolkit/CxTextEdit.h"

#include "toolkit/Guard.h"

#include <QInputMethodEvent>
#include <QKeyEvent>

void TcxTextEdit::keyReleaseEvent(QKeyEvent *event)
{
    QLineEdit::keyReleaseEvent(event);
    if (!event->isAutoRepeat())
        KeyUp(event->key());
}

void TcxTextEdit::inputMethodEvent(QInputMethodEvent *event)
{
    const bool commits = !event->commitString().isEmpty() || event->replacementLength() > 0;
    QLineEdit::inputMethodEvent(event);
    if (commits)
        KeyUp(Qt::Key_unknown);
}

void TcxTextEdit::KeyUp(int key)
{
    if (OnKeyUp)
        RunGuarded([&] { OnKeyUp(key); });
}
