#pragma once

#include "everywhere/EverywhereHit.h"
#include "everywhere/FoldedText.h"

/// Sets a hit's words and those before and after it, as they stand in the source: the hit begins at `begin` of the
/// folded text and has `size` bytes there. Empty words if the source has no letter there any more.
void SetWords(EverywhereHit &hit, QByteArrayView source, Markup markup, const std::vector<FoldedPlace> &places,
              qsizetype begin, qsizetype size);
