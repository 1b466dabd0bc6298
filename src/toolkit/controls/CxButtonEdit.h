#pragma once

#include <QLineEdit>

#include <functional>

/// A line edit with buttons inside its right end: those that are its children, in the order in which they were made.
class TcxButtonEdit : public QLineEdit
{
    Q_OBJECT
public:
    using QLineEdit::QLineEdit;

    /// Runs under the general guard, before the edit takes the key. The key is a Qt::Key.
    std::function<void(int key)> OnKeyPress;

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void PlaceButtons();
};
