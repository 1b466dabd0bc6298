#pragma once

class QWidget;

/// Lets windows and pages that ask for "Segoe UI" have a font with the letters of Pāli and Vietnamese where that font
/// is not installed. Call once, after the application object exists.
void InstallFontSubstitutes();

/// True where the desktop's own font of the pages is installed.
bool IsPageFontInstalled();

/// Gives a window the font that all windows have, before its controls are made.
void SetWindowFont(QWidget &window);

/// Gives a control's font the system's smoothed quality.
void SmoothFont(QWidget &control);
