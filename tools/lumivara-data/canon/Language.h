#pragma once

#include <QString>

#include <array>

/// The languages that a passage is written in, in the order of the sources' columns.
enum class Language { Pali, Vietnamese, English };
inline constexpr int LanguageCount = 3;

/// One name in each of them, empty where there is none.
using LanguageNames = std::array<QString, LanguageCount>;
