#include "fuzz/ToolInput.h"

#include "lumivara-data/files/HtmlCleaner.h"

FUZZ_TARGET(HtmlCleaner)
{
    CleaningCounts first, second;
    const CleanedHtml once = CleanHtml(input, first);
    for (const qsizetype place : {once.headStart, once.htmlStart, once.bodyTag})
        REQUIRE(place >= -1 && place <= once.html.size());
    const QByteArray twice = CleanHtml(once.html, second).html;
    REQUIRE(second.scripts + second.handlers + second.references + second.frames + second.forms + second.refreshes ==
            0);
    REQUIRE(twice.size() == once.html.size());
}
