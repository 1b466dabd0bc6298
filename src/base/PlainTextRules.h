#pragma once

#include <array>
#include <string_view>

/// The rules of plain text for one unit of HTML: UTF-16 for StripHtml(), UTF-8 bytes for a scan of stored pages. All
/// special characters are ASCII, so both give the same.
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

/// Characters before which a blank is removed.
template <typename Unit>
constexpr bool DropsBlankBefore(Unit unit)
{
    return IsBlank(unit) || IsLineEnd(unit) || unit == '<';
}

struct Entity
{
    /// The part after the "&".
    std::string_view name;
    char character;
};

/// Decoding one never makes another one, except "&amp;", whose result is not read again. So a single pass from left to
/// right gives the same as one pass for each.
inline constexpr std::array<Entity, 5> Entities{Entity{"quot;", '"'}, Entity{"apos;", '\''}, Entity{"gt;", '>'},
                                                Entity{"lt;", '<'}, Entity{"amp;", '&'}};

} // namespace PlainTextRules
