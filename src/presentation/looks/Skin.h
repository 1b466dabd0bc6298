#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <array>

/// The parts that a skin colours. In the skin file they have the same names with a small first letter.
enum class SkinPart {
    Window,            ///< background of windows and panes
    WindowText,        ///< captions on it
    DisabledText,      ///< text and pictures of disabled controls, on every background
    Base,              ///< background of edits, lists, trees and grids
    AlternateBase,     ///< every second row of a grid
    Text,              ///< text on Base and AlternateBase
    PlaceholderText,   ///< hint in an empty edit
    Selection,         ///< background of selected rows and text
    SelectionText,     ///< text on Selection and InactiveSelection
    InactiveSelection, ///< the same while another control has the focus
    RowHover,          ///< row under the mouse, with Text on it
    Link,              ///< links in windows
    Frame,             ///< frames of edits, lists and groups
    GridLine,          ///< lines of a grid
    FocusRing,         ///< ring around the focused control, also the default button's frame
    Bar,               ///< background of a bar of buttons, with WindowText on it
    BarLine,           ///< the line below a bar
    Button,            ///< push buttons, combos, spin buttons, with ButtonText on them
    ButtonText,        ///< text on all four button fills
    ButtonFrame,       ///< frame of a button at rest
    ButtonHover,       ///< under the mouse; the only background of a flat button
    ButtonPressed,     ///< pressed, or with its menu open
    ButtonChecked,     ///< checked
    Header,            ///< headers of grids
    HeaderText,        ///< text on Header and HeaderHover
    HeaderHover,       ///< header under the mouse
    Menu,              ///< menus and drop-down lists
    MenuText,          ///< text on them
    MenuSelection,     ///< the item under mouse or keyboard
    MenuSelectionText, ///< text on it
    MenuSide,          ///< the strip under the pictures of a menu
    MenuFrame,         ///< frame and separators of a menu
    Tab,               ///< a page's tab, with WindowText on it
    TabActive,         ///< the tab of the page on show, with WindowText on it
    Splitter,          ///< the line between two panes
    ScrollTrack,       ///< background of a scroll bar
    ScrollThumb,       ///< its thumb
    ScrollThumbHover,  ///< the thumb under the mouse or held
    ToolTip,           ///< tool tips
    ToolTipText,       ///< text on them
    ToolTipFrame,      ///< their frame
    Progress,          ///< the done part of a progress bar
    IconInk,           ///< lines of the pictures on buttons and in menus
    IconAccent,        ///< their second colour
    IconFill,          ///< the light parts inside them
    Count
};

/// A part's fill: one colour, or a vertical gradient of two. 0xAARRGGBB.
struct SkinFill
{
    quint32 top = 0;
    quint32 bottom = 0;

    bool IsFlat() const { return top == bottom; }
    bool operator==(const SkinFill &) const = default;
};

/// A whole look as values. Texts, lines and pictures use the upper colour of their part.
struct Skin
{
    QString name;        ///< what the file and the settings call it; unique in a file
    QString displayName; ///< for people
    bool isDark = false;
    bool isHighContrast = false;
    int cornerRadius = 3;  ///< of buttons, edits and menus, in pixels at 96 dpi, 0 to 12
    int lineWidth = 1;     ///< of frames, 1 to 3
    int focusWidth = 1;    ///< of the focus ring, 1 to 4
    bool isGlossy = false; ///< bars and buttons shine in their upper half
    std::array<SkinFill, static_cast<size_t>(SkinPart::Count)> fills;
    /// Small pictures that replace what the style draws itself, SVG as UTF-8, by the style's name for them:
    /// "branchClosed", "branchOpen", "check", "radio", "arrowDown", "arrowUp". Each may be missing.
    QHash<QString, QByteArray> pictures;

    const SkinFill &Fill(SkinPart part) const { return fills[static_cast<size_t>(part)]; }
    quint32 Colour(SkinPart part) const { return Fill(part).top; }
};
