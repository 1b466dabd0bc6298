#include "lumivara-data/CanonCheck.h"
#include "lumivara-data/CanonSource.h"
#include "tools/ToolSupport.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>

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
class SampleCanon : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        s_source = ReadCanonSource(SampleSources() + u"/canon"_s);
        for (const SourceText &text : s_source.texts)
            s_texts.append({text, ComposePages(s_source, text)});
    }
    static void TearDownTestSuite() { s_texts.clear(); }

    static qsizetype CountTexts(const std::function<bool(const ComposedText &)> &condition)
    {
        return std::count_if(s_texts.cbegin(), s_texts.cend(), condition);
    }

    static inline CanonSource s_source;
    static inline QList<ComposedText> s_texts;
};

TEST_F(SampleCanon, HoldsThe205TextsUnderTheirNumbers)
{
    ASSERT_EQ(s_texts.size(), 205);
    EXPECT_EQ(s_texts.first().text.idVic, 1101);
    EXPECT_EQ(s_texts.first().text.nameVietnamese, u"Chương Verañja"_s);
    EXPECT_EQ(s_texts.first().text.namePali, u"Verañjakaṇḍaṃ"_s);
    EXPECT_EQ(s_texts.last().text.idVic, 9971);
    for (qsizetype i = 0; i < s_texts.size(); ++i) {
        EXPECT_EQ(s_texts[i].text.number, i + 1);
        EXPECT_GE(s_texts[i].text.idVic, 1101);
        EXPECT_LE(s_texts[i].text.idVic, 9971);
    }
}

TEST_F(SampleCanon, GroupsStandThreeLevelsDeep)
{
    QHash<int, int> depths{{-1, 0}};
    int deepest = 0;
    for (const SourceGroup &group : s_source.groups) {
        EXPECT_TRUE(depths.contains(group.parent)) << group.idVit;
        depths.insert(group.idVit, depths.value(group.parent) + 1);
        deepest = qMax(deepest, depths.value(group.idVit));
    }
    EXPECT_EQ(deepest, 3);
    EXPECT_EQ(s_source.groups.size(), 28);
}

TEST_F(SampleCanon, NoTwoPagesAreTheSame)
{
    QHash<QByteArray, int> owners;
    for (const ComposedText &composed : s_texts) {
        for (const QByteArray &page : composed.All()) {
            if (page.isEmpty())
                continue;
            // What follows the head: titles alone would make pages differ.
            const QByteArray body = page.mid(page.indexOf("</p>", page.indexOf("<body")));
            EXPECT_FALSE(owners.contains(body)) << composed.text.idVic << " and " << owners.value(body);
            owners.insert(body, composed.text.idVic);
        }
    }
}

TEST_F(SampleCanon, EveryPageSaysThatItIsASample)
{
    for (const ComposedText &composed : s_texts) {
        const auto says = [](const QByteArray &page, const char *label) {
            return page.isEmpty() || page.contains(label);
        };
        EXPECT_TRUE(says(composed.pages.pali, "Văn bản mẫu")) << composed.text.idVic;
        EXPECT_TRUE(says(composed.pages.vietnamese, "Văn bản mẫu")) << composed.text.idVic;
        EXPECT_TRUE(says(composed.pages.english, "Sample text")) << composed.text.idVic;
        EXPECT_TRUE(says(composed.pages.parallel, "Văn bản mẫu")) << composed.text.idVic;
    }
}

TEST_F(SampleCanon, PagesHoldWhatTheReaderExchangesAndLeaveNothingUnfilled)
{
    for (const ComposedText &composed : s_texts) {
        for (const QByteArray &page : composed.All()) {
            if (page.isEmpty())
                continue;
            EXPECT_TRUE(page.contains("Segoe UI") && page.contains("150%")) << composed.text.idVic;
            EXPECT_EQ(InspectPage(page).charset, "utf-8") << composed.text.idVic;
            EXPECT_FALSE(page.contains('{') || page.contains(" | ")) << composed.text.idVic;
            EXPECT_EQ(page.count("<table"), page.count("</table>")) << composed.text.idVic;
            EXPECT_EQ(page.count("<td"), page.count("</td>")) << composed.text.idVic;
        }
    }
}

TEST_F(SampleCanon, ShowsEveryKindOfPageThatTheReaderMustDealWith)
{
    const auto vietnamese = [](const QByteArray &part) {
        return CountTexts([&](const ComposedText &c) { return c.pages.vietnamese.contains(part); });
    };
    EXPECT_GE(vietnamese("href=\"https://example.org/"), 2);
    EXPECT_GE(vietnamese("href=\"mailto:"), 1);
    EXPECT_GE(vietnamese("href=\"#vi-note-"), 2);
    EXPECT_GE(vietnamese("src=\"data:image/"), 3);
    EXPECT_GE(vietnamese("<table"), 3);
    EXPECT_GE(vietnamese("<ul>"), 3);
    EXPECT_GE(vietnamese("&#7789;"), 1);
    EXPECT_GE(vietnamese("&nbsp;"), 1);
    EXPECT_GE(vietnamese("&amp;"), 1);
}

TEST_F(SampleCanon, SomeTextsLackALanguageAndAThirdHasEnglish)
{
    EXPECT_GE(CountTexts([](const ComposedText &c) { return c.pages.pali.isEmpty(); }), 1);
    EXPECT_GE(CountTexts([](const ComposedText &c) { return c.pages.vietnamese.isEmpty(); }), 1);
    EXPECT_GE(CountTexts([](const ComposedText &c) { return c.pages.parallel.isEmpty() && !c.pages.pali.isEmpty(); }),
              1);
    const qsizetype english = CountTexts([](const ComposedText &c) { return !c.pages.english.isEmpty(); });
    EXPECT_GE(english, 60);
    EXPECT_LE(english, 80);
    EXPECT_GE(CountTexts([](const ComposedText &c) { return c.text.nameEnglish.isNull(); }), 100);
}

TEST_F(SampleCanon, ExactlyOneTextIsLong)
{
    constexpr qsizetype longPage = 500 * 1000;
    const auto isLong = [](const ComposedText &c) {
        return c.pages.pali.size() >= longPage && c.pages.vietnamese.size() >= longPage;
    };
    EXPECT_EQ(CountTexts(isLong), 1);
    EXPECT_EQ(CountTexts([](const ComposedText &c) { return c.pages.vietnamese.size() > 100 * 1000; }), 1);
}

TEST_F(SampleCanon, PaliIsWrittenWithAllItsLetters)
{
    QByteArray all;
    for (const ComposedText &composed : s_texts)
        all += composed.pages.pali;
    const QString text = QString::fromUtf8(all);
    for (const QChar letter : u"āīūṃṅñṭḍṇḷĀ"_s)
        EXPECT_TRUE(text.contains(letter)) << qPrintable(QString(letter));
}

TEST_F(SampleCanon, SixtyPassagesAndMoreAreTheirOwn)
{
    qsizetype own = 0;
    for (const SourceText &text : s_source.texts)
        own += s_source.passages.contains(u"text %1"_s.arg(text.idVic));
    EXPECT_GE(own, 60);
    qsizetype sections = 0;
    for (auto it = s_source.passages.cbegin(); it != s_source.passages.cend(); ++it)
        sections += it.key().startsWith(u"text "_s);
    EXPECT_EQ(sections, own) << "a passage belongs to no text";
}

} // namespace
