#include "fuzz/ToolInput.h"

#include "lumivara-data/canon/ImportedPage.h"
#include "lumivara-data/files/PageFacts.h"
#include "lumivara-data/files/SourceFolder.h"

FUZZ_TARGET(ImportedPage)
{
    SilentReport silent;
    const auto text = TextAsUtf8(input, QStringLiteral("page"), silent.report);
    if (!text)
        return;
    const auto [title, body] = FuzzedPair(*text);
    CleaningCounts counts;
    for (const QByteArray &page : {ImportedPage::FromHtml(body, title, Language::English, counts),
                                   ImportedPage::FromText(body, title, Language::Pali),
                                   ImportedPage::FromMarkdown(body, title, Language::Vietnamese, counts)}) {
        const PageFacts facts = InspectPage(page);
        REQUIRE(facts.firstBadByte < 0 && facts.charset == "utf-8");
        CleaningCounts left;
        CleanHtml(page, left);
        REQUIRE(left.scripts + left.handlers + left.references + left.frames + left.forms + left.refreshes == 0);
    }
}
