#pragma once

#include <QComboBox>
#include <QFrame>
#include <QMenu>
#include <QPlainTextEdit>

/// Qt's controls under class names of their own, by which fonts are chosen.

/// An area that holds other controls.
class TPanel : public QFrame
{
    Q_OBJECT
public:
    using QFrame::QFrame;
};

/// An area whose controls are in layout items with captions.
class TdxLayoutControl : public QFrame
{
    Q_OBJECT
public:
    using QFrame::QFrame;

    /// Of the items inside it.
    void SetCaptionFont(const QFont &font);
};

/// A text box of several lines.
class TMemo : public QPlainTextEdit
{
    Q_OBJECT
public:
    using QPlainTextEdit::QPlainTextEdit;
};

class TcxComboBox : public QComboBox
{
    Q_OBJECT
public:
    using QComboBox::QComboBox;
};

/// A bar of buttons along a window's edge.
class TdxBar : public QFrame
{
    Q_OBJECT
public:
    using QFrame::QFrame;
};

/// A submenu of a bar or menu. An entry that is a control gets the keys while it is the current one; Qt's own menus
/// pass them on only when the arrows come from another entry.
class TdxBarSubItem : public QMenu
{
    Q_OBJECT
public:
    explicit TdxBarSubItem(QWidget *parent = nullptr);

protected:
    void showEvent(QShowEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void FocusCurrentEntry();
};

/// A menu that pops up at the mouse or below a button.
class TdxBarPopupMenu : public QMenu
{
    Q_OBJECT
public:
    using QMenu::QMenu;
};
