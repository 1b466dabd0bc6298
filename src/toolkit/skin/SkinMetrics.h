#pragma once

// Lengths of the skin style in units at 96 dpi, the same under every skin.

constexpr int SkinFieldHeight = 28;  ///< least height of buttons, edits and combos
constexpr int SkinRowHeight = 24;    ///< least height of check boxes, and of rows without their own height
constexpr int SkinFieldRoom = 4;     ///< padding of a field, including its frame
constexpr int SkinArrowWidth = 22;   ///< width of the arrow in combos and spin boxes
constexpr int SkinMenuSide = 30;     ///< width of the strip under the pictures of a menu
constexpr int SkinMenuRoom = 8;      ///< space between the parts of a menu's item
constexpr int SkinMenuEdge = 4;      ///< space between a menu's edge and its items
constexpr int SkinIndicator = 16;    ///< side of check boxes and radio buttons
constexpr int SkinScrollExtent = 12; ///< breadth of scroll bars
constexpr int SkinMaskRadius = 6;    ///< greatest corner radius of windows, whose corners are masked, not blended
