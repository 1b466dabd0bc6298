#pragma once

#include <QtGlobal>

/// One locale identifier of the desktop, its names in UTF-8.
struct LocaleRow
{
    quint16 id;
    const char *tag;         ///< culture tag, such as "vi-VN"
    const char *englishName; ///< "Vietnamese (Vietnam)"
    const char *shortName;   ///< "Vietnamese"
    const char *nativeName;
};

/// The row of an identifier, or null. The table is constant, so the row lives as long as the program.
const LocaleRow *FindLocale(quint16 id);
