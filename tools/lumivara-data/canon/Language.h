#pragma once

/// The languages that a passage is written in, in the order of the sources' columns.
enum class Language { Pali, Vietnamese, English };
inline constexpr int LanguageCount = 3;
