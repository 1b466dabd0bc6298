#include "fuzz/ToolInput.h"

#include "lumivara-data/canon/ImportedPage.h"
#include "lumivara-data/canon/SegmentedHead.h"
#include "lumivara-data/canon/SegmentedPage.h"
#include "lumivara-data/canon/SegmentedText.h"
#include "lumivara-data/files/SourceFolder.h"

namespace {

/// A page is closed by itself.
void CheckPage(const QByteArray &page)
{
    if (page.isNull())
        return;
    REQUIRE(page.isValidUtf8() && page.contains("charset=utf-8"));
    CleaningCounts counts;
    CleanHtml(page, counts);
    REQUIRE(counts.scripts + counts.handlers + counts.references + counts.frames + counts.forms == 0);
}

} // namespace

FUZZ_TARGET(Segments)
{
    const QList<QByteArray> files = FuzzedFiles(input, 3);
    SilentReport silent;
    Alignment alignment;
    std::vector<QByteArray> repeated;
    size_t given = 0;
    for (int i = 0; i < 3; ++i) {
        const auto text = TextAsUtf8(files[i], QStringLiteral("text.json"), silent.report);
        if (!text)
            continue;
        try {
            const std::vector<TextSegment> segments = ParseSegments(*text);
            given = std::max(given, segments.size());
            if (i == 2)
                alignment.AddMarkup(segments, repeated);
            else
                alignment.AddText(i, segments, repeated);
        } catch (const SegmentFault &fault) {
            REQUIRE(fault.Line() > 0 && !fault.Fault().isEmpty());
        }
    }
    std::vector<AlignedSegment> segments = alignment.Take();
    REQUIRE(segments.size() + repeated.size() >= given);
    const SegmentedHead head = HeadOf(segments);
    REQUIRE(head.title < static_cast<int>(segments.size()) && head.above.size() <= 16);
    for (const LanguageNames &names : head.above)
        REQUIRE(std::all_of(names.begin(), names.end(), [](const QString &name) { return name.size() <= 127; }));
    for (AlignedSegment &segment : segments) {
        for (QByteArray &words : segment.text)
            words = ImportedPage::Escaped(words);
    }
    for (const bool hasMarkup : {true, false}) {
        CleaningCounts counts;
        const QByteArray &title = head.titles[0];
        CheckPage(SegmentedPage::Single(segments, Language::Pali, hasMarkup, head.title, title, counts));
        CheckPage(SegmentedPage::Parallel(segments, Language::Vietnamese, title));
    }
}
