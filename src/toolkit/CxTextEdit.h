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

protected:
    void keyReleaseEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;

private:
    void KeyUp(int key);
};
