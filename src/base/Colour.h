#pragma once

#include <QString>

#include <functional>

/// A colour value: 0x00BBGGRR, or 0xFF0000NN for the system colour with code NN.
using Colour = quint32;

/// Returns a system colour's current value (high byte 0) by its code, such as 5 for the window's background.
/// Set by the window layer; without it every system colour is white.
extern std::function<Colour(int code)> SystemColour;

/// Resolves a system colour to its current value; returns other colours unchanged.
Colour PlainColour(Colour colour);

/// "#RRGGBB" in capitals; a system colour is resolved at the moment of the call.
QString ColorToHtml(Colour colour);
/// Whether black text on the colour has a contrast of less than 4.5 to 1, by the relative luminance of WCAG 2.
bool IsDarkColour(Colour colour);

/// Adds n + 1 to each channel, up to 255. A system colour is resolved first.
Colour LightenColor(Colour colour, quint8 n);
/// Subtracts n + 1 from each channel, down to 0. A system colour is resolved first.
Colour DarkenColor(Colour colour, quint8 n);
