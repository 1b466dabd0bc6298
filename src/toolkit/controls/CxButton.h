#pragma once

#include <QPointer>
#include <QToolButton>

/// A flat button that may run an action or drop a menu. It takes picture and enabled state from its action, while text
/// and hint stay its own; with no hint of its own it shows the action's caption.
class TcxButton : public QToolButton
{
    Q_OBJECT
    Q_PROPERTY(bool ShowHint READ ShowHint WRITE SetShowHint)
public:
    explicit TcxButton(QWidget *parent = nullptr);

    /// Off: the hint exists, but no tooltip shows it.
    bool ShowHint() const { return m_showHint; }
    void SetShowHint(bool on) { m_showHint = on; }

    /// Borrows the action, which may die first.
    void SetAction(QAction *action);
    /// Gives the button an arrow that pops the menu up at the mouse; the body stays a button. Borrows the menu.
    void SetDropDownMenu(QMenu *menu);
    QAction *Action() const { return m_action; }

protected:
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void FollowAction();

    QPointer<QAction> m_action;
    bool m_showHint = true;
};
