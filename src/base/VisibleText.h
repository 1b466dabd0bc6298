#pragma once

#include <algorithm>
#include <array>
#include <string_view>

/// What the visible text of a page is made of, as the browser's own scripts read it.

/// Elements, in small letters, whose borders are gaps that no word crosses.
constexpr bool IsBlockElement(std::string_view name)
{
    constexpr std::array<std::string_view, 49> names{
        "address", "article", "aside", "blockquote", "body",     "br",         "caption", "center", "dd",   "details",
        "dir",     "div",     "dl",    "dt",         "fieldset", "figcaption", "figure",  "footer", "form", "frameset",
        "h1",      "h2",      "h3",    "h4",         "h5",       "h6",         "head",    "header", "hr",   "html",
        "img",     "legend",  "li",    "main",       "menu",     "nav",        "ol",      "p",      "pre",  "section",
        "summary", "table",   "tbody", "td",         "tfoot",    "th",         "thead",   "tr",     "ul"};
    static_assert(std::ranges::is_sorted(names));
    return std::ranges::binary_search(names, name);
}

/// Elements whose contents are not read.
constexpr bool IsUnreadElement(std::string_view name)
{
    constexpr std::array<std::string_view, 9> names{"iframe", "noframes", "object",   "script", "select",
                                                    "style",  "template", "textarea", "title"};
    static_assert(std::ranges::is_sorted(names));
    return std::ranges::binary_search(names, name);
}

/// False for blanks of every kind, and for what has no width and is never seen: joins, hints for hyphens and
/// directions, byte order marks.
constexpr bool IsVisibleLetter(char32_t code)
{
    if (code <= U' ')
        return code != U' ' && code != 0 && (code < U'\t' || code > U'\r');
    if (code < 0x85)
        return true;
    if (code >= 0x2000 && code <= 0x2069)
        return !(code <= 0x200F || (code >= 0x2028 && code <= 0x202F) || code >= 0x205F);
    return code != 0x85 && code != 0xA0 && code != 0xAD && code != 0x34F && code != 0x61C && code != 0x1680 &&
           code != 0x180E && code != 0x3000 && code != 0xFEFF;
}
