#include "everywhere/HitWords.h"

#include <algorithm>

namespace {

// Of the folded text: more than a line of the list shows.
constexpr qsizetype BytesBefore = 80;
constexpr qsizetype BytesAfter = 120;
constexpr QChar CutOff = u'…';

} // namespace

void SetWords(EverywhereHit &hit, QByteArrayView source, Markup markup, const std::vector<FoldedPlace> &places,
              qsizetype begin, qsizetype size)
{
    const qsizetype from = std::max<qsizetype>(begin - BytesBefore, 0);
    const qsizetype end = begin + size;
    FoldedStretch stretch;
    stretch.Read(source, markup, places, from, end + BytesAfter);
    const qsizetype hitIndex = stretch.IndexAt(begin);
    const qsizetype afterIndex = stretch.IndexAt(end);
    const qsizetype lastIndex = stretch.IndexAt(end + BytesAfter);
    hit.before = stretch.Text(stretch.IndexAt(from), hitIndex);
    hit.hit = stretch.Text(hitIndex, afterIndex);
    hit.after = stretch.Text(afterIndex, lastIndex);
    if (from > 0) {
        // Without a blank there is no word to begin with.
        hit.before.remove(0, hit.before.indexOf(u' ') + 1);
        hit.before.prepend(CutOff);
    }
    if (!stretch.IsAtEnd() || lastIndex < std::ssize(stretch.Letters())) {
        if (const qsizetype blank = hit.after.lastIndexOf(u' '); blank >= 0)
            hit.after.truncate(blank);
        hit.after.append(CutOff);
    } else if (hit.after.endsWith(u' ')) {
        hit.after.chop(1);
    }
}
