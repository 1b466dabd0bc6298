#pragma once

#include <QLineEdit>

#include <functional>

/// A line edit that tells of each key released in it, after the text has changed. A text committed by an input method
/// counts as a released key (Qt::Key_unknown), what a held key repeats does not.
class TcxTextEdit : public QLineEdit
{
    Q_OBJECT
public:
    using QLineEdit::QLineEdit;

    /// Runs under the general guard. The key is a Qt::Key.
    std::function<void(int key)> OnKeyUp;
    /// Before the edit takes a key that is pressed or held, under the general guard. `text` is what the key makes. A
    /// text committed by an input method comes behind its change, as Qt::Key_unknown; one that only takes away, as
    /// Qt::Key_Backspace.
    std::function<void(int key, const QString &text)> OnKeyDown;

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;

private:
    void KeyUp(int key);
    void KeyDown(int key, const QString &text);
};
