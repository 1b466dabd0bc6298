#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

/// What all windows and modules share: the option holders that are no module's own, and small helpers without a home.

extern QString AppPath;       ///< folder of the executable with its trailing separator
extern int InterfaceLang;     ///< index of the interface language: 0 Vietnamese, 1 English
extern QString FontName;      ///< font of the page
extern QString LastWord;      ///< word last shown by the dictionary
extern int DictionaryKind;    ///< 1 to 8 one directed dictionary, 0 none yet
extern bool MultiDictionary;  ///< show the partner dictionary's content too
extern int GlobalActiveStyle; ///< 1-based index of the skin, 0 for none
extern QString GlobalActiveName;
extern int CollectionMode; ///< 1: the Kelora's settings key

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

/// A to Z in lower case, every other character as it is.
QString LowerAscii(QString text);
/// Upper case by the full Unicode rule, character by character: what would grow, as "ß", stays.
QString UpperByCharacter(const QString &text);
