#include "lumivara-data/CanonCheck.h"
#include "lumivara-data/CanonSource.h"
#include "tools/ToolSupport.h"

#include <QSet>

using namespace Qt::StringLiterals;

TEST(SampleCanon, PagesAreTheirOwnSayWhatTheyAreAndAreOfEveryKind)
{
    const CanonSource source = ReadCanonSource(SampleSources() + u"/canon"_s);
    QSet<QByteArray> bodies;
    QByteArray all;
    int english = 0, longTexts = 0, withoutPali = 0, withoutVietnamese = 0, withoutParallel = 0;
    for (const SourceText &text : source.texts) {
        SCOPED_TRACE(text.idVic);
        const TextPages pages = ComposePages(source, text);
        for (const QByteArray &page : {pages.pali, pages.vietnamese, pages.english, pages.parallel}) {
            if (page.isEmpty())
                continue;
            // What follows the head: titles alone would make pages differ.
            const QByteArray body = page.mid(page.indexOf("</p>", page.indexOf("<body")));
            EXPECT_FALSE(bodies.contains(body));
            bodies.insert(body);
            EXPECT_TRUE(page.contains(page == pages.english ? "Sample text" : "Văn bản mẫu"));
            EXPECT_TRUE(page.contains("Segoe UI") && page.contains("150%"));
            EXPECT_EQ(InspectPage(page).charset, "utf-8");
            EXPECT_FALSE(page.contains('{') || page.contains(" | "));
            EXPECT_EQ(page.count("<td"), page.count("</td>"));
        }
        all += pages.pali + pages.vietnamese;
        english += !pages.english.isEmpty();
        longTexts += std::min(pages.pali.size(), pages.vietnamese.size()) > 500'000;
        withoutPali += pages.pali.isEmpty();
        withoutVietnamese += pages.vietnamese.isEmpty();
        withoutParallel += pages.parallel.isEmpty() && !pages.pali.isEmpty();
    }
    EXPECT_TRUE(withoutPali && withoutVietnamese && withoutParallel && longTexts == 1 && english >= 60 &&
                english <= 80);
    for (const char *part :
         {"href=\"https://example.org/", "href=\"mailto:", "href=\"#vi-note-", "src=\"data:image/", "<ul>", "&#7789;",
          "&nbsp;", "&amp;", "ā", "ī", "ū", "ṃ", "ṅ", "ñ", "ṭ", "ḍ", "ṇ", "ḷ", "Ā"})
        EXPECT_TRUE(all.contains(part)) << part;
}
