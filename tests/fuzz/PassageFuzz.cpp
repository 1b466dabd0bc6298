#include "fuzz/Fuzz.h"

#include "reader/PageComposer.h"
#include "stores/Schema.h"

FUZZ_TARGET(Passage)
{
    const auto [fontName, page] = FuzzedPair(input);
    PageOptions options;
    options.fontName = QString::fromUtf8(fontName);
    options.marginWidth = int(page.size() % 7);
    for (const int mode : {PageMode::Pali, PageMode::Vietnamese, PageMode::English, PageMode::Parallel}) {
        options.mode = mode;
        const QByteArray shown = ComposePassage(page, options);
        REQUIRE(!page.isEmpty() || shown.isEmpty());
        // A font that is called as it was before changes nothing but the margins and the size.
        if (options.fontName == QLatin1StringView("Segoe UI") && mode == PageMode::Parallel)
            REQUIRE(shown.size() >= page.size());
    }
}
