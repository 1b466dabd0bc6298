#include "lumivara-data/CanonCheck.h"
#include "lumivara-data/CanonSource.h"
#include "tools/ToolSupport.h"

#include <QHash>

#include <gmock/gmock.h>

#include <functional>

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

TEST_F(SampleCanon, PagesAreTheirOwnSayWhatTheyAreAndLeaveNothingUnfilled)
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

TEST_F(SampleCanon, HasEveryKindOfPageThatTheReaderMustDealWith)
{
    const auto holding = [](const char *part) {
        return [part](const ComposedText &c) { return c.pages.vietnamese.contains(part); };
    };
    constexpr qsizetype many = 1000, longPage = 500 * 1000;
    const struct
    {
        const char *what;
        std::function<bool(const ComposedText &)> condition;
        qsizetype least, most;
    } rows[]{
        {"link", holding("href=\"https://example.org/"), 2, many},
        {"mail link", holding("href=\"mailto:"), 1, many},
        {"footnote", holding("href=\"#vi-note-"), 2, many},
        {"picture", holding("src=\"data:image/"), 3, many},
        {"table", holding("<table"), 3, many},
        {"list", holding("<ul>"), 3, many},
        {"letter by number", holding("&#7789;"), 1, many},
        {"fixed blank", holding("&nbsp;"), 1, many},
        {"ampersand", holding("&amp;"), 1, many},
        {"no Pāli", [](const ComposedText &c) { return c.pages.pali.isEmpty(); }, 1, many},
        {"no Vietnamese", [](const ComposedText &c) { return c.pages.vietnamese.isEmpty(); }, 1, many},
        {"no parallel page",
         [](const ComposedText &c) { return c.pages.parallel.isEmpty() && !c.pages.pali.isEmpty(); }, 1, many},
        {"English", [](const ComposedText &c) { return !c.pages.english.isEmpty(); }, 60, 80},
        {"no English title", [](const ComposedText &c) { return c.text.nameEnglish.isNull(); }, 100, many},
        {"long",
         [](const ComposedText &c) { return std::min(c.pages.pali.size(), c.pages.vietnamese.size()) >= longPage; }, 1,
         1},
        {"longer than most", [](const ComposedText &c) { return c.pages.vietnamese.size() > 100 * 1000; }, 1, 1},
    };
    for (const auto &row : rows) {
        const qsizetype count = std::count_if(s_texts.cbegin(), s_texts.cend(), row.condition);
        EXPECT_TRUE(count >= row.least && count <= row.most) << row.what << ": " << count;
    }
    QByteArray pali;
    for (const ComposedText &composed : s_texts)
        pali += composed.pages.pali;
    for (const QChar letter : u"āīūṃṅñṭḍṇḷĀ"_s)
        EXPECT_TRUE(pali.contains(QString(letter).toUtf8())) << qPrintable(QString(letter));
}

TEST_F(SampleCanon, SixtyPassagesAndMoreAreTheirOwn)
{
    qsizetype own = 0, sections = 0;
    for (const SourceText &text : s_source.texts)
        own += s_source.passages.contains(u"text %1"_s.arg(text.idVic));
    for (auto it = s_source.passages.cbegin(); it != s_source.passages.cend(); ++it)
        sections += it.key().startsWith(u"text "_s);
    EXPECT_GE(own, 60);
    EXPECT_EQ(sections, own) << "a passage belongs to no text";
}

} // namespace
