#pragma once

#include "presentation/languages/Components.h"

class QFont;
class QWidget;

/// Gives one component the font that its kind and its property "Tag" ask for, see FontRules.h. Other components keep
/// theirs. Renews BaseFontName and BaseFontSize.
void ApplyFontPolicy(QObject &component);

/// Gives a font the quality 4 of its description: smoothed text.
void SetFontQuality(QFont &font);
/// The same for a control's font, which the controls inside it share.
void SetFontQuality(QWidget &control);
