#pragma once

#include "base/Colour.h"

/// The base colours of the shared look, one for each style. base/Colour.h lightens and darkens them.
inline constexpr Colour LabelColors[] = {0x000000}; ///< text of emphasised labels
inline constexpr Colour BaseColors[] = {0x9D2000};  ///< background of the shared grid styles
