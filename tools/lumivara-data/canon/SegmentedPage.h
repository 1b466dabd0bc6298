#pragma once

#include "lumivara-data/canon/Language.h"
#include "lumivara-data/canon/SegmentedText.h"
#include "lumivara-data/files/HtmlCleaner.h"

#include <vector>

/// Pages of aligned segments.
namespace SegmentedPage {

/// The page of one language, of texts that are escaped already; null if it has none of the text. Without mark-up
/// segments of one part of the text make a paragraph, and the one at `titleAt` is the largest heading.
QByteArray Single(const std::vector<AlignedSegment> &segments, Language language, bool hasMarkup, int titleAt,
                  const QByteArray &title, CleaningCounts &counts);
/// Pāli and another language side by side, a row a segment, likewise; null unless both have some of the text.
QByteArray Parallel(const std::vector<AlignedSegment> &segments, Language other, const QByteArray &title);

} // namespace SegmentedPage
