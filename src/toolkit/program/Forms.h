#pragma once

#include <QString>

#include <functional>

class QWidget;

/// The tool windows: at most one of each, found again by name, without a widget parent so that none is kept in front of
/// another, gone when closed.

/// The open window of that name; null if there is none.
QWidget *FindForm(const QString &name);

/// Gives the window of that name its normal size if it is minimised, else leaves it alone; without one, `create` makes
/// it, and it gets the name and is shown. The window. What `create` throws passes through.
QWidget *OpenForm(const QString &name, const std::function<QWidget *()> &create);

/// Deletes every tool window, without close events. Called by the main window at its end.
void DeleteForms();
