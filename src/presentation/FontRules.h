#pragma once

#include "base/Colour.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

/// What a control's font is made of, told by the kind of the control and by its integer Tag, the role that a designer
/// gave it: 0 is plain text, other values are headings, notes, hints and grey edits.

extern QString BaseFontName; ///< of the font of all windows, renewed at each use of the policy
extern int BaseFontSize;     ///< its size in points
extern int StyleColorIndex;  ///< the row of the colour tables in use

/// Where a kind keeps the font that a rule is about.
enum class FontPlace {
    Font,         ///< the control's own
    StyleFont,    ///< the one of the control's style object
    Columns,      ///< cells and headers of the control's columns; its own gets the quality alone
    Captions,     ///< captions of the groups and items of a layout
    ManagedItems, ///< what stands on the bars of a bar manager
    Bar,
    Menu
};

/// How a rule fills that place.
enum class FontStart {
    Base,     ///< the base font as a whole, with its quality
    BaseName, ///< the font as it was designed, under the base font's name
    Designed  ///< the font as it was designed
};

struct FontRule
{
    FontPlace place = FontPlace::Font;
    FontStart start = FontStart::Base;
    int sizePercent = 0; ///< of the base size, fractions cut off; 0 leaves the size
    int sizeLess = 0;    ///< points less than that
    bool addsItalic = false;
    bool smoothsAgain = false; ///< a font whose size or style has changed has lost its quality
    std::optional<Colour> textColour = {};
    int effectDepth = 0; ///< of a white shadow behind the text, 0 for none

    /// In points; 0 where the rule leaves it.
    int Size(int baseSize) const { return sizePercent == 0 ? 0 : baseSize * sizePercent / 100 - sizeLess; }
};

/// The kind that decides for a control, by the names of its classes in any order: the first of the table that is among
/// them, with a rule for its Tag or without. Empty if it is none of the table's kinds.
QByteArray FontKind(const QList<QByteArray> &classNames);

/// The rule of a kind and Tag; none where such a control keeps its font.
std::optional<FontRule> FindFontRule(const QByteArray &kind, int tag);
