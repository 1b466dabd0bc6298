#include "toolkit/program/Doors.h"

#include "base/Colour.h"
#include "toolkit/program/ColorChooser.h"
#include "toolkit/program/DesktopLook.h"
#include "toolkit/program/Guard.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDesktopServices>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QFont>
#include <QFontDatabase>
#include <QMessageBox>
#include <QPalette>
#include <QRandomGenerator>
#include <QTimer>

#include <algorithm>

namespace {

bool ShowMessageBox(const QString &title, const QString &text, BoxButtons buttons, BoxIcon icon)
{
    QMessageBox box;
    box.setObjectName(QStringLiteral("msgBox"));
    box.setWindowTitle(title);
    box.setTextFormat(Qt::PlainText);
    QString shown = text;
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
    box.setText(shown);
    box.setWindowModality(Qt::ApplicationModal);
    box.setIcon(icon == BoxIcon::Question ? QMessageBox::Question
                : icon == BoxIcon::Error  ? QMessageBox::Critical
                                          : QMessageBox::NoIcon);
    if (buttons == BoxButtons::YesNo) {
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        box.setDefaultButton(QMessageBox::Yes);
        box.setEscapeButton(QMessageBox::No);
    } else {
        box.setStandardButtons(QMessageBox::Ok);
    }
    const QList<QAbstractButton *> answers = box.buttons();
    for (QAbstractButton *button : answers)
        button->setIcon({});
    const int answer = box.exec();
    return answer == QMessageBox::Yes || answer == QMessageBox::Ok;
}

bool OpenDocument(const QString &target)
{
    const bool isFile = QFileInfo::exists(target);
    return QDesktopServices::openUrl(isFile ? QUrl::fromLocalFile(target) : QUrl(target));
}

/// The palette of the desktop, taken before a skin changes the application's.
const QPalette &StartPalette()
{
    static const QPalette palette = QGuiApplication::palette();
    return palette;
}

/// Palette roles for the system colours 0 to 30. A palette has no roles for frames and captions; they use the nearest
/// one.
constexpr QPalette::ColorRole systemColourRoles[] = {
    QPalette::Button,          // 0 scroll bar
    QPalette::Window,          // 1 desktop
    QPalette::Highlight,       // 2 active caption
    QPalette::Mid,             // 3 inactive caption
    QPalette::Window,          // 4 menu
    QPalette::Base,            // 5 window background
    QPalette::Shadow,          // 6 window frame
    QPalette::WindowText,      // 7 menu text
    QPalette::Text,            // 8 window text
    QPalette::HighlightedText, // 9 caption text
    QPalette::Mid,             // 10 active border
    QPalette::Mid,             // 11 inactive border
    QPalette::Dark,            // 12 workspace
    QPalette::Highlight,       // 13 highlight
    QPalette::HighlightedText, // 14 highlighted text
    QPalette::Button,          // 15 button face
    QPalette::Dark,            // 16 button shadow
    QPalette::Dark,            // 17 grey text
    QPalette::ButtonText,      // 18 button text
    QPalette::WindowText,      // 19 inactive caption text
    QPalette::Light,           // 20 button highlight
    QPalette::Shadow,          // 21 dark shadow
    QPalette::Midlight,        // 22 light edge
    QPalette::ToolTipText,     // 23 hint text
    QPalette::ToolTipBase,     // 24 hint background
    QPalette::Window,          // 25 unused by the desktop
    QPalette::Link,            // 26 hot text
    QPalette::Highlight,       // 27 gradient of the active caption
    QPalette::Mid,             // 28 gradient of the inactive caption
    QPalette::Highlight,       // 29 selected menu item
    QPalette::Window,          // 30 menu bar
};

Colour SystemColourByCode(int code)
{
    constexpr Colour white = 0x00FFFFFF;
    if (code < 0 || code >= static_cast<int>(std::size(systemColourRoles)))
        return white;
    const QColor colour = StartPalette().color(QPalette::Active, systemColourRoles[code]);
    return static_cast<Colour>(colour.red()) | static_cast<Colour>(colour.green()) << 8 |
           static_cast<Colour>(colour.blue()) << 16;
}

quint32 DrawNumber()
{
    // The generator is seeded by the system, so runs differ.
    return QRandomGenerator::global()->generate();
}

QStringList FontNames()
{
    QStringList names;
    const QStringList families = QFontDatabase::families();
    for (const QString &family : families) {
        // If two foundries have a font of one name, Qt appends the foundry, and no page would find that name.
        if (!QFontDatabase::isPrivateFamily(family))
            names.append(family.section(QStringLiteral(" ["), 0, 0));
    }
    const QString pageFont = QStringLiteral("Segoe UI");
    const QStringList substitutes = QFont::substitutes(pageFont);
    if (std::any_of(substitutes.begin(), substitutes.end(),
                    [](const auto &name) { return QFontDatabase::hasFamily(name); }))
        names.append(pageFont);
    names.removeDuplicates();
    names.sort(Qt::CaseInsensitive);
    return names;
}

qint64 Clock()
{
    static QElapsedTimer clock = [] {
        QElapsedTimer started;
        started.start();
        return started;
    }();
    return clock.elapsed();
}

std::optional<int> askedExitCode;
bool isLoopRunning = false;

} // namespace

PlatformDoors &Doors()
{
    static PlatformDoors doors{ShowMessageBox, OpenDocument, SystemColourByCode, DrawNumber,
                               FontNames,      ChooseColour, WatchDesktopLook,   Clock};
    return doors;
}

void KeepSystemColours()
{
    StartPalette();
}

void OpenDocumentLater(const QString &target)
{
    QTimer::singleShot(0, qApp, [target] { RunGuarded([&] { Doors().openDocument(target); }); });
}

void ShowWaitCursor(bool on)
{
    const bool isOn = QGuiApplication::overrideCursor() != nullptr;
    if (on == isOn)
        return;
    if (on)
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QGuiApplication::restoreOverrideCursor();
}

void TerminateApplication(int exitCode)
{
    // Before the loop runs, exit() has no effect.
    if (isLoopRunning)
        QCoreApplication::exit(exitCode);
    else
        askedExitCode = exitCode;
}

int RunApplication()
{
    if (askedExitCode)
        return *std::exchange(askedExitCode, std::nullopt);
    isLoopRunning = true;
    const int exitCode = QApplication::exec();
    isLoopRunning = false;
    return exitCode;
}
