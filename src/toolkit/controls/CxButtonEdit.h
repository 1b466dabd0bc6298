#pragma once

#include <QLineEdit>

#include <functional>

/// A line edit with buttons inside its right end: its child buttons, in order of creation.
class TcxButtonEdit : public QLineEdit
{
    Q_OBJECT
public:
    using QLineEdit::QLineEdit;

    /// Runs under the general guard, before the edit handles the key. The key is a Qt::Key.
    std::function<void(int key)> OnKeyPress;

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void PlaceButtons();
};
