#pragma once

#include <QString>

class QFont;
class QWidget;

/// If "Segoe UI" is not installed, substitutes a font with the letters of Pāli and Vietnamese for it, in windows and
/// pages. Call once, after the application object exists.
void InstallFontSubstitutes();

/// True if "Segoe UI" itself is installed.
bool IsPageFontInstalled();

/// The family that draws "Segoe UI" here: itself if it is installed, else the substitute.
QString PageFontFamily();

/// Scales a length in pixels at 96 dpi by this desktop's text size.
int GrownPixels(int pixels);

/// Sets a font's height, in pixels at 96 dpi, so that it scales with the desktop's text size.
void SetFontHeight(QFont &font, int pixels);

/// Gives a window the font of all windows. Call before its controls are made.
void SetWindowFont(QWidget &window);

/// Scales a window, and its controls' fixed sizes and pictures, by the desktop's text size relative to 96 dpi; the
/// window and its frame get no larger than the screen. Call once, after the controls are made.
void GrowWithText(QWidget &window);
