#pragma once

#include <QString>
#include <QVariantMap>

/// A place in a page, told by the parts of its text and not by pixels, so that it holds in any width, size and dress,
/// and nearly in another language. The beginning of the page by default.
struct PagePlace
{
    int block = 0;    ///< from 0, in reading order: a paragraph, a heading, a row of a table, whatever holds text
    int cell = 0;     ///< from 0, within a row
    double share = 0; ///< of the block's characters that stand before the place, 0 to 1
    QString segment;  ///< the id that the page itself gives to this part of the text; empty where it gives none

    bool operator==(const PagePlace &) const = default;
};

/// The place as the page's scripts have it, and back; what is missing or no number is 0.
QVariantMap MapOf(const PagePlace &place);
PagePlace PlaceOf(const QVariantMap &map);
