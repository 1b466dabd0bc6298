#pragma once

#include "base/Colour.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

/// Rules for a control's font, by the kind of the control and by its integer Tag, which the designer sets: 0 is plain
/// text, other values are headings, notes, hints and grey edits.

extern QString BaseFontName; ///< of the font of all windows, renewed at each use of the policy
extern int BaseFontSize;     ///< its size in points
extern int StyleColorIndex;  ///< the row of the colour tables in use

/// The font of a control that a rule changes.
enum class FontPlace {
    Font,         ///< the control's own
    StyleFont,    ///< the one of the control's style object
    Columns,      ///< cells and headers of the control's columns; its own gets only the quality
    Captions,     ///< captions of the groups and items of a layout
    ManagedItems, ///< the items on the bars of a bar manager
    Bar,
    Menu
};

/// The font that a rule starts from.
enum class FontStart {
    Base,     ///< the base font as a whole, with its quality
    BaseName, ///< the font as designed, with the base font's name
    Designed  ///< the font as it was designed
};

struct FontRule
{
    FontPlace place = FontPlace::Font;
    FontStart start = FontStart::Base;
    int sizePercent = 0; ///< of the base size, rounded down; 0 keeps the size
    int sizeLess = 0;    ///< points to subtract from that
    bool addsItalic = false;
    bool smoothsAgain = false; ///< sets the quality again, which a change of size or style resets
    std::optional<Colour> textColour = {};
    int effectDepth = 0; ///< of a white shadow behind the text, 0 for none

    /// In points; 0 if the rule keeps the size.
    int Size(int baseSize) const { return sizePercent == 0 ? 0 : baseSize * sizePercent / 100 - sizeLess; }
};

/// The kind of a control, by the names of its classes in any order: the first in the table that is among them, even if
/// it has no rule for the Tag. Empty if none is.
QByteArray FontKind(const QList<QByteArray> &classNames);

/// The rule for a kind and Tag; none if such a control keeps its font.
std::optional<FontRule> FindFontRule(const QByteArray &kind, int tag);
