#pragma once

#include <QString>

#include <functional>

/// A colour value: with a high byte of 0 the low bytes are red, green, blue, red lowest; with 0xFF the low byte names a
/// system colour.
using Colour = quint32;

/// Answers a system colour's current value (high byte 0) by its code, such as 5 for the window's ground.
/// The window layer sets it; without one every system colour is white.
extern std::function<Colour(int code)> SystemColour;

/// A system colour as the plain one that it is at the moment of the call; others as they are.
Colour PlainColour(Colour colour);

/// "#RRGGBB" in capitals; a system colour is resolved at the moment of the call.
QString ColorToHtml(Colour colour);
/// Whether black text on the colour has a contrast of less than 4.5 to 1, by the relative luminance of WCAG 2.
bool IsDarkColour(Colour colour);

/// Adds n + 1 steps of 1 to red, green and blue, each up to 255. A system colour is resolved first.
Colour LightenColor(Colour colour, quint8 n);
/// Takes n + 1 steps of 1 from each channel, down to 0. A system colour is resolved first.
Colour DarkenColor(Colour colour, quint8 n);
