#pragma once

#include "base/Colour.h"

#include <QString>
#include <QStringList>
#include <QUrl>

#include <functional>
#include <optional>

class QWidget;

/// The windows' narrow doors to the platform. Each is a function that tests replace; the defaults are the real thing.
enum class BoxButtons { Ok, YesNo };
enum class BoxIcon { None, Question, Error };

struct PlatformDoors
{
    /// Shows a box named "msgBox": plain text, no parent, modal to the application; "\r" parts its lines.
    /// True for OK or Yes. The first button is the default.
    std::function<bool(const QString &title, const QString &text, BoxButtons, BoxIcon)> messageBox;
    /// Opens a document or address in the program that the system has for it. False if it has none.
    std::function<bool(const QString &target)> openDocument;
    /// A system colour's current value by its code.
    std::function<Colour(int code)> systemColour;
    /// One number drawn for the random opening.
    std::function<quint32()> drawNumber;
    /// Names of the fonts that a page may ask for, each once and in order. "Segoe UI" is one of them also where another
    /// font stands in for it.
    std::function<QStringList()> fontNames;
    /// Asks for any colour; nothing if the reader cancels.
    std::function<std::optional<Colour>(QWidget *parent, Colour initial)> chooseColour;
};

PlatformDoors &Doors();

/// Makes the system's colours those of now, for the whole run: what changes the application's palette asks for it
/// before.
void KeepSystemColours();

/// Opens a document or address behind the call that asks for it, for callers whose answer the engine waits for. What
/// fails is reported.
void OpenDocumentLater(const QString &target);

/// The wait cursor: two states, no nesting.
void ShowWaitCursor(bool on);

/// Asks the event loop to end; remembered when it has not begun yet.
void TerminateApplication(int exitCode = 0);
/// Runs the event loop, unless termination was asked for before. The exit code of the program.
int RunApplication();
