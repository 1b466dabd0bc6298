#include "presentation/Locales.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr LocaleRow rows[] = {
    {1033, "en-US", "English (United States)", "English", "English (United States)"},
    {1066, "vi-VN", "Vietnamese (Vietnam)", "Vietnamese", "Tiếng Việt (Việt Nam)"},
};

} // namespace

const LocaleRow *FindLocale(quint16 id)
{
    const auto *row =
        std::lower_bound(std::begin(rows), std::end(rows), id, [](const LocaleRow &r, quint16 v) { return r.id < v; });
    return row != std::end(rows) && row->id == id ? row : nullptr;
}
