#pragma once

// Lengths of the skin style in units at 96 dpi, the same under every skin.

constexpr int SkinFieldHeight = 28;  ///< of buttons, edits and combos at least
constexpr int SkinRowHeight = 24;    ///< of check boxes and rows that have no height of their own, at least
constexpr int SkinFieldRoom = 4;     ///< between a field's edge and what is in it, frame included
constexpr int SkinArrowWidth = 22;   ///< of the part with the arrow in combos and spin boxes
constexpr int SkinMenuSide = 30;     ///< width of the strip under the pictures of a menu
constexpr int SkinMenuRoom = 8;      ///< between parts of a menu's item
constexpr int SkinMenuEdge = 4;      ///< between a menu's edge and its items
constexpr int SkinIndicator = 16;    ///< side of check boxes and radio buttons
constexpr int SkinScrollExtent = 12; ///< breadth of scroll bars
constexpr int SkinMaskRadius = 6;    ///< the most that windows are rounded by, for their corners are not blended
