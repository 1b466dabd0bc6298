#include "fuzz/Fuzz.h"

#include "everywhere/EverywhereRanges.h"
#include "everywhere/HitFinder.h"

/// What is found in a page has to be marked in its visible text, folded at a stretch or in pieces.
FUZZ_TARGET(Everywhere)
{
    const auto [wordBytes, page] = FuzzedPair(input);
    const QString visible = EverywhereVisibleText(page);
    const FoldedText text = Folded(page, Markup::Html);
    REQUIRE(Folded(visible.toUtf8(), Markup::None).bytes == text.bytes);

    QByteArray buffer;
    TextFolder folder(page, Markup::Html, buffer);
    while (folder.Fold(1)) {
    }
    REQUIRE(folder.Folded().bytes == text.bytes);

    for (const bool isExact : {false, true}) {
        const EverywhereQuery query(QString::fromUtf8(wordBytes), {.exactCase = isExact, .exactMarks = isExact});
        if (query.IsEmpty())
            continue;
        HitFinder finder(query, text, Markup::Html, [&bytes = page] { return QByteArrayView(bytes); });
        while (finder.Find()) {
        }
        const std::vector<EverywhereRange> ranges = EverywhereRanges(query, visible);
        REQUIRE(ranges.size() == finder.Found().begins.size());
        qsizetype end = 0;
        for (const EverywhereRange &range : ranges) {
            REQUIRE(range.begin >= end && range.end > range.begin && range.end <= visible.size());
            end = range.end;
        }
    }
}
