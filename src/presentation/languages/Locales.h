#pragma once

#include <QtGlobal>

#include <span>

/// One Windows locale identifier. The names are UTF-8 and static.
struct LocaleRow
{
    quint16 id;
    const char *tag;         ///< culture tag, such as "vi-VN"
    const char *englishName; ///< with the country, such as "Vietnamese (Vietnam)"
    const char *shortName;   ///< the language's English name alone
    const char *nativeName;  ///< in the language itself, with the country
};

/// All known identifiers, ascending.
std::span<const LocaleRow> LocaleRows();

/// The row of an identifier; null if there is none.
const LocaleRow *FindLocale(quint16 id);
