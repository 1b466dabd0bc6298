#pragma once

#include <QString>

class QAction;
class QMenu;
class QToolButton;

/// What a button without a hint of its own says: its action's caption, and the shortcut if there is one.
QString HintOf(const QAction &action);

/// Gives a bar's button its action. If the action has no hint of its own, the button's hint is HintOf().
/// Borrows both; either may be destroyed first.
void SetBarAction(QToolButton &button, QAction &action);

/// Gives a bar's button the menu that it opens, and the button back its look when the menu has closed. Borrows the
/// menu.
void SetBarMenu(QToolButton &button, QMenu &menu);

/// Lets a button show as one under the mouse only if it is: Qt does not tell it where the mouse went while a menu was
/// open.
void FollowMouseAfter(QMenu &menu, QToolButton &button);
