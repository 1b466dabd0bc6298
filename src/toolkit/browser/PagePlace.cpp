#include "toolkit/browser/PagePlace.h"

#include <algorithm>

using namespace Qt::StringLiterals;

QVariantMap MapOf(const PagePlace &place)
{
    return {
        {u"block"_s, place.block}, {u"cell"_s, place.cell}, {u"share"_s, place.share}, {u"segment"_s, place.segment}};
}

PagePlace PlaceOf(const QVariantMap &map)
{
    return {std::max(map.value(u"block"_s).toInt(), 0), std::max(map.value(u"cell"_s).toInt(), 0),
            std::clamp(map.value(u"share"_s).toDouble(), 0.0, 1.0), map.value(u"segment"_s).toString()};
}
