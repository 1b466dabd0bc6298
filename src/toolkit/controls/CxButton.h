#pragma once

#include <QPointer>
#include <QToolButton>

/// A flat button that may run an action or drop down a menu. Picture and enabled state are the action's; text and hint
/// are its own. Without a hint it shows the action's caption and shortcut.
class TcxButton : public QToolButton
{
    Q_OBJECT
    Q_PROPERTY(bool ShowHint READ ShowHint WRITE SetShowHint)
public:
    explicit TcxButton(QWidget *parent = nullptr);

    /// If false, the hint is kept but no tool tip shows it.
    bool ShowHint() const { return m_showHint; }
    void SetShowHint(bool on) { m_showHint = on; }

    /// Borrows the action, which may be destroyed first.
    void SetAction(QAction *action);
    /// Adds an arrow that pops up the menu at the mouse; the rest stays a button. Borrows the menu.
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
