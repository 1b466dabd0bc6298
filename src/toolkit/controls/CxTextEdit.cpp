#include "toolkit/controls/CxTextEdit.h"

#include "toolkit/program/Guard.h"

#include <QInputMethodEvent>
#include <QKeyEvent>

void TcxTextEdit::keyPressEvent(QKeyEvent *event)
{
    KeyDown(event->key(), event->text());
    QLineEdit::keyPressEvent(event);
}

void TcxTextEdit::keyReleaseEvent(QKeyEvent *event)
{
    QLineEdit::keyReleaseEvent(event);
    if (!event->isAutoRepeat())
        KeyUp(event->key());
}

void TcxTextEdit::inputMethodEvent(QInputMethodEvent *event)
{
    const bool commits = !event->commitString().isEmpty() || event->replacementLength() > 0;
    const QString text = event->commitString();
    QLineEdit::inputMethodEvent(event);
    if (!commits)
        return;
    KeyDown(text.isEmpty() ? Qt::Key_Backspace : Qt::Key_unknown, text);
    KeyUp(Qt::Key_unknown);
}

void TcxTextEdit::KeyUp(int key)
{
    if (OnKeyUp)
        RunGuarded([&] { OnKeyUp(key); });
}

void TcxTextEdit::KeyDown(int key, const QString &text)
{
    if (OnKeyDown)
        RunGuarded([&] { OnKeyDown(key, text); });
}
