#include "lumivara-data/CanonCheck.h"
#include "lumivara-data/CanonSource.h"
#include "tools/ToolSupport.h"

#include <QHash>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

struct ComposedText
{
    SourceText text;
    TextPages pages;

    QList<QByteArray> All() const { return {pages.pali, pages.vietnamese, pages.english, pages.parallel}; }
};

/// The sample collection, read and composed once for all cases.
const QList<ComposedText> &Texts()
{
    static const QList<ComposedText> texts = [] {
        const CanonSource source = ReadCanonSource(SampleSources() + u"/canon"_s);
        QList<ComposedText> composed;
        for (const SourceText &text : source.texts)
            composed.append({text, ComposePages(source, text)});
        return composed;
    }();
    return texts;
}

TEST(SampleCanon, PagesAreTheirOwnSayWhatTheyAreAndLeaveNothingUnfilled)
{
    QHash<QByteArray, int> owners;
    for (const ComposedText &composed : Texts()) {
        for (const QByteArray &page : composed.All()) {
            if (page.isEmpty())
                continue;
            // What follows the head: titles alone would make pages differ.
            const QByteArray body = page.mid(page.indexOf("</p>", page.indexOf("<body")));
            EXPECT_FALSE(owners.contains(body)) << composed.text.idVic << " and " << owners.value(body);
            owners.insert(body, composed.text.idVic);
            EXPECT_TRUE(page.contains(page == composed.pages.english ? "Sample text" : "Văn bản mẫu"))
                << composed.text.idVic;
            EXPECT_TRUE(page.contains("Segoe UI") && page.contains("150%")) << composed.text.idVic;
            EXPECT_EQ(InspectPage(page).charset, "utf-8") << composed.text.idVic;
            EXPECT_FALSE(page.contains('{') || page.contains(" | ")) << composed.text.idVic;
            EXPECT_EQ(page.count("<table"), page.count("</table>")) << composed.text.idVic;
            EXPECT_EQ(page.count("<td"), page.count("</td>")) << composed.text.idVic;
        }
    }
}

TEST(SampleCanon, HasEveryKindOfPageThatTheReaderMustDealWith)
{
    QByteArray pali, vietnamese;
    int english = 0, longTexts = 0;
    bool lacksPali = false, lacksVietnamese = false, lacksParallel = false, lacksEnglishTitle = false;
    for (const auto &[text, pages] : Texts()) {
        pali += pages.pali;
        vietnamese += pages.vietnamese;
        english += !pages.english.isEmpty();
        longTexts += std::min(pages.pali.size(), pages.vietnamese.size()) > 500'000;
        lacksPali |= pages.pali.isEmpty();
        lacksVietnamese |= pages.vietnamese.isEmpty();
        lacksParallel |= pages.parallel.isEmpty() && !pages.pali.isEmpty();
        lacksEnglishTitle |= text.nameEnglish.isNull();
    }
    EXPECT_TRUE(lacksPali && lacksVietnamese && lacksParallel && lacksEnglishTitle);
    EXPECT_TRUE(english >= 60 && english <= 80) << english;
    EXPECT_EQ(longTexts, 1);
    for (const char *part : {"href=\"https://example.org/", "href=\"mailto:", "href=\"#vi-note-", "src=\"data:image/",
                             "<table", "<ul>", "&#7789;", "&nbsp;", "&amp;"})
        EXPECT_TRUE(vietnamese.contains(part)) << part;
    for (const QChar letter : u"āīūṃṅñṭḍṇḷĀ"_s)
        EXPECT_TRUE(pali.contains(QString(letter).toUtf8())) << qPrintable(QString(letter));
}

} // namespace
