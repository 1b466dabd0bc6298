#pragma once

#include <QString>

#include <functional>

class QWidget;

/// The tool windows: at most one of each, found by name, without a widget parent so that none stays in front of
/// another, deleted when closed; Ctrl+W closes each.

/// The open window of that name; null if there is none.
QWidget *FindForm(const QString &name);

/// Returns the window of that name, restored if it was minimised. If there is none, makes it with `create`, gives it
/// the name and shows it. Exceptions of `create` pass through.
QWidget *OpenForm(const QString &name, const std::function<QWidget *()> &create);

/// Deletes every tool window, without close events. The main window calls it at its end.
void DeleteForms();
