#pragma once

#include "presentation/GlobalUnit.h"

/// The colours that the shared look starts from, one row a style.
inline constexpr Colour LabelColors[] = {0x000000}; ///< text of emphasised labels
inline constexpr Colour BaseColors[] = {0x9D2000};  ///< ground of the shared grid styles

/// Adds n + 1 steps of 1 to red, green and blue, each up to 255. A system colour is resolved first.
Colour LightenColor(Colour colour, quint8 n);
/// Takes n + 1 steps of 1 from each channel, down to 0. A system colour is resolved first.
Colour DarkenColor(Colour colour, quint8 n);
