#pragma once

#include <QString>

#include <functional>

class QWidget;

/// The tool windows: at most one of each, found by name, without a widget parent so that none stays in front of
/// another, deleted when closed.

/// The open window of that name; null if there is none.
QWidget *FindForm(const QString &name);

/// How a minimised window is restored: to its normal size, or maximised if it was so before.
enum class Restored { Normal, AsBefore };

/// Returns the window of that name, restored if it was minimised; it does not take the focus then. If there is none,
/// makes it with `create`, gives it the name and shows it. Exceptions of `create` pass through.
QWidget *OpenForm(const QString &name, const std::function<QWidget *()> &create, Restored restored = Restored::Normal);

/// Deletes every tool window, without close events. The main window calls it at its end.
void DeleteForms();
