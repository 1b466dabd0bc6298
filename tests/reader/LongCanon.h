#pragma once

#include "support/TestSupport.h"

inline constexpr int LongParagraph = 320; ///< characters

/// A canon whose texts, 1101 to 1103, are longer than the view: 65 paragraphs in Pāli and in Vietnamese, each of its
/// number and a word again and again ("40 viet viet").
const ScratchFolder &LongCanon();
