#include "lumivara-data/CanonSource.h"
#include "tools/ToolSupport.h"

#include <QSet>

using namespace Qt::StringLiterals;

TEST(SampleCanon, PagesAreTheirOwnSayWhatTheyAreAndLeaveNothingUnfilled)
{
    const CanonSource source = ReadCanonSource(BesideTests(u"data/canon"_s));
    QSet<QByteArray> bodies;
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
            EXPECT_FALSE(page.contains('{') || page.contains(" | "));
            EXPECT_EQ(page.count("<td"), page.count("</td>"));
        }
    }
}
