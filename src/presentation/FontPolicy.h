#pragma once

#include "presentation/languages/Components.h"

class QFont;
class QWidget;

/// Gives one component the font for its kind and its property "Tag", see FontRules.h. A component without a rule keeps
/// its font. Updates BaseFontName and BaseFontSize.
void ApplyFontPolicy(QObject &component);

/// Gives a font quality 4: smoothed text.
void SetFontQuality(QFont &font);
/// The same for a control's font, which the controls inside it inherit.
void SetFontQuality(QWidget &control);
