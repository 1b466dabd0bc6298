#pragma once

#include "base/Colour.h"

#include <QString>
#include <QStringList>
#include <QUrl>

#include <functional>
#include <optional>

class QObject;
class QWidget;

/// The windows' doors to the platform: functions that tests replace. The defaults are the real ones.
enum class BoxButtons { Ok, YesNo };
enum class BoxIcon { None, Question, Error };

struct PlatformDoors
{
    /// Shows a box named "msgBox": plain text, no parent, modal to the application; "\r" separates lines.
    /// True for OK or Yes. The first button is the default.
    std::function<bool(const QString &title, const QString &text, BoxButtons, BoxIcon)> messageBox;
    /// Opens a document or address in the system's program for it. False if there is none.
    std::function<bool(const QString &target)> openDocument;
    /// A system colour's current value by its code.
    std::function<Colour(int code)> systemColour;
    /// A random number, for opening a random text.
    std::function<quint32()> drawNumber;
    /// Names of the fonts that a page can use, sorted and unique. Includes "Segoe UI" even if it is substituted.
    std::function<QStringList()> fontNames;
    /// Asks for any colour; empty if the reader cancels.
    std::function<std::optional<Colour>(QWidget *parent, Colour initial)> chooseColour;
    /// Tells whether the desktop wishes dark windows, soon and at each change, until the context ends.
    std::function<void(QObject *context, std::function<void(bool isDark)> tell)> watchDesktopLook;
    /// Milliseconds of a clock that never goes back.
    std::function<qint64()> clock;
};

PlatformDoors &Doors();

/// Freezes the system colours at their current values for the whole run. Call before changing the application's
/// palette.
void KeepSystemColours();

/// Opens a document or address in the next turn of the event loop, for callers that Chromium waits for. Reports
/// failures.
void OpenDocumentLater(const QString &target);

/// The wait cursor: two states, no nesting.
void ShowWaitCursor(bool on);

/// Ends the event loop; if it does not run yet, it will not start.
void TerminateApplication(int exitCode = 0);
/// Runs the event loop, unless TerminateApplication was called before. Returns the program's exit code.
int RunApplication();
