#pragma once

#include <QString>

class QFont;
class QWidget;

/// Lets windows and pages that ask for "Segoe UI" have a font with the letters of Pāli and Vietnamese where that font
/// is not installed. Call once, after the application object exists.
void InstallFontSubstitutes();

/// True where the desktop's own font of the pages is installed.
bool IsPageFontInstalled();

/// The family that draws "Segoe UI" here: itself, where it is installed, or the stand-in.
QString PageFontFamily();

/// What a length in pixels, told for 96 dpi, is on this desktop, where people may have asked for larger text.
int GrownPixels(int pixels);

/// Gives a font a height told in pixels at 96 dpi, so that it grows with the desktop's text.
void SetFontHeight(QFont &font, int pixels);

/// Gives a window the font that all windows have, before its controls are made.
void SetWindowFont(QWidget &window);

/// Makes a window and the controls that were given a size or pictures of a size as much larger as the desktop's text
/// is than at 96 dpi, yet the window no larger than its screen. Call once, after the controls are made.
void GrowWithText(QWidget &window);
