#pragma once

#include <array>
#include <string_view>

/// What a character means to the reading of HTML as plain text, in whatever unit the text comes: UTF-16 for
/// StripHtml(), bytes of UTF-8 for a scan of stored pages. All marks are ASCII, so the two agree.
namespace PlainTextRules {

template <typename Unit>
constexpr bool IsLineEnd(Unit unit)
{
    return unit == '\n' || unit == '\r';
}

template <typename Unit>
constexpr bool IsBlank(Unit unit)
{
    return unit == ' ' || unit == '\t';
}

/// Before such a character no blank stays.
template <typename Unit>
constexpr bool DropsBlankBefore(Unit unit)
{
    return IsBlank(unit) || IsLineEnd(unit) || unit == '<';
}

struct Entity
{
    /// What follows the "&".
    std::string_view name;
    char character;
};

/// None of them makes another one when it is decoded, save "&amp;", whose result is not read again: one pass from left
/// to right gives the same as one pass for each.
inline constexpr std::array<Entity, 5> Entities{Entity{"quot;", '"'}, Entity{"apos;", '\''}, Entity{"gt;", '>'},
                                                Entity{"lt;", '<'}, Entity{"amp;", '&'}};

} // namespace PlainTextRules
