#include "presentation/languages/Locales.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr LocaleRow Rows[] = {
#include "presentation/languages/LocaleRows.inc"
};

static_assert(std::size(Rows) == 273);
static_assert(std::ranges::is_sorted(Rows, std::ranges::less_equal{}, &LocaleRow::id), "bisection needs the order");

} // namespace

std::span<const LocaleRow> LocaleRows()
{
    return Rows;
}

const LocaleRow *FindLocale(quint16 id)
{
    const auto row = std::ranges::lower_bound(Rows, id, {}, &LocaleRow::id);
    return row != std::end(Rows) && row->id == id ? row : nullptr;
}
