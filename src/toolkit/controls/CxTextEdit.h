#pragma once

#include <QLineEdit>

#include <functional>

/// A line edit that reports each released key, after the text has changed. A text committed by an input method counts
/// as a released key (Qt::Key_unknown); auto-repeat does not.
class TcxTextEdit : public QLineEdit
{
    Q_OBJECT
public:
    using QLineEdit::QLineEdit;

    /// Runs under the general guard. The key is a Qt::Key.
    std::function<void(int key)> OnKeyUp;
    /// Runs under the general guard, before the edit handles a pressed or repeated key. `text` is the key's text. A
    /// text committed by an input method is reported after its change, as Qt::Key_unknown, or as Qt::Key_Backspace if
    /// it only deletes.
    std::function<void(int key, const QString &text)> OnKeyDown;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;

private:
    void KeyUp(int key);
    void KeyDown(int key, const QString &text);
};
