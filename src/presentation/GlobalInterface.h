#pragma once

#include "base/Colour.h"

/// The colours that the shared look starts from, one row a style; what lightens and darkens them is in base/Colour.h.
inline constexpr Colour LabelColors[] = {0x000000}; ///< text of emphasised labels
inline constexpr Colour BaseColors[] = {0x9D2000};  ///< ground of the shared grid styles
