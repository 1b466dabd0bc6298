#include "everywhere/HitFinder.h"

#include "everywhere/EverywhereHit.h"
#include "everywhere/EverywhereRanges.h"
#include "everywhere/HitWords.h"

#include <QStringList>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

/// A page with the hits of a query.
class SearchedPage
{
public:
    SearchedPage(const QByteArray &page, const QString &typed, const EverywhereSwitches &switches = {})
        : m_page(page), m_query(typed, switches), m_text(Folded(m_page, Markup::Html))
    {
        HitFinder finder(m_query, m_text, Markup::Html, [this] { return QByteArrayView(m_page); });
        while (finder.Find())
            ++pieces;
        hits = finder.Found();
    }
    EverywhereHit Hit(qsizetype number) const
    {
        EverywhereHit hit;
        SetWords(hit, m_page, Markup::Html, *m_text.places, hits.begins[static_cast<std::size_t>(number)],
                 m_query.Parts()[hits.PartOf(number)].folded.size());
        return hit;
    }
    QString Hits() const
    {
        QStringList words;
        for (qsizetype hit = 0; hit < std::ssize(hits.begins); ++hit)
            words += Hit(hit).hit;
        return words.join(u'|');
    }
    /// The same by way of the visible text, in which a page on the screen is marked.
    QString Marked() const
    {
        const QString text = EverywhereVisibleText(m_page);
        QStringList words;
        for (const EverywhereRange &range : EverywhereRanges(m_query, text))
            words += text.sliced(range.begin, range.end - range.begin);
        return words.join(u'|');
    }

    FoundHits hits;
    int pieces = 0;

private:
    QByteArray m_page;
    EverywhereQuery m_query;
    FoldedText m_text;
};

constexpr EverywhereSwitches ExactCase{.exactCase = true};
constexpr EverywhereSwitches ExactMarks{.exactMarks = true};
constexpr EverywhereSwitches WholeWords{.wholeWords = true};

TEST(HitFinder, FindsWordsAndPhrases)
{
    const std::tuple<const char *, QByteArray, QString, EverywhereSwitches, QString> rows[]{
        {"NoMarks", "Tỳ khưu, TY KHUU, tỷ-khưu", u"ty"_s, {}, u"Tỳ|TY|tỷ"_s},
        {"MarksOfTheQuery", "nana ñāṇa", u"ñāṇa"_s, {}, u"nana|ñāṇa"_s},
        {"InsideWords", "Paṭhamakathinasikkhāpada", u"kathina"_s, {}, u"kathina"_s},
        {"OverTagsAndEntities",
         "ka<b>thi</b>na k&amacr;&#x1E6D;hina ka&shy;thina",
         u"kathina"_s,
         {},
         u"kathina|kāṭhina|kathina"_s},
        {"NotOverBlocks", "ka<p>thina", u"kathina"_s, {}, u""_s},
        {"Decomposed", "a\xCC\x84t o\xCC\x9B\xCC\x89", u"āt ở"_s, {}, u"a\u0304t|o\u031B\u0309"_s},
        {"APhrase",
         "tỳ\r\n khưu tỳ<p><b>khưu</b> tỳ&nbsp;khưu tỳkhưu khưu tỳ",
         u"\"ty khuu\""_s,
         {},
         u"tỳ khưu|tỳ khưu|tỳ khưu"_s},
        {"NotOverlapping", "banananana", u"ana"_s, {}, u"ana|ana"_s},
        {"TheFirstThenTheLonger", "abcde abc", u"bcd abc ab"_s, {}, u"abc|abc"_s},
        {"ExactCase", "Đa đa DA da", u"Da"_s, ExactCase, u"Đa"_s},
        {"ExactMarks",
         "Ñāṇa nana ñāṇā n\xCC\x83"
         "a\xCC\x84n\xCC\xA3"
         "a",
         u"ñāṇa"_s, ExactMarks, u"Ñāṇa|n\u0303a\u0304n\u0323a"_s},
        {"NoMarkThere", "ā a a\xCC\x84 A", u"a"_s, ExactMarks, u"a|A"_s},
        {"ExactBoth", "Ñāṇa ñāṇa nana", u"ñāṇa"_s, {.exactCase = true, .exactMarks = true}, u"ñāṇa"_s},
        {"ARefusedOneHidesNone", "aAaa", u"aa"_s, ExactCase, u"aa"_s},
        {"WholeWords", "an bana an. (an) 1an an<br>an", u"an"_s, WholeWords, u"an|an|an|an|an"_s},
        {"WholePhrases", "a bc xa bc a bcd", u"\"a bc\""_s, WholeWords, u"a bc"_s},
        {"WholeSigns", "a+b + c", u"+"_s, WholeWords, u"+|+"_s},
        {"NoPartOfALetter", "한국", u"\u1112"_s, {}, u""_s},
        {"WholeKoreanLetters", "한국", u"국"_s, {}, u"국"_s},
        {"BeyondU+FFFF", "x\xF0\x9D\x84\x9Ey", u"\U0001D11E"_s, {}, u"\U0001D11E"_s},
        {"NotInMarkup", "<p class='kathina'>&kathina; <style>kathina</style>", u"kathina"_s, {}, u"kathina"_s},
        {"AllPartsOrNotIsOfTheText", "a b", u"a x"_s, {}, u"a"_s},
    };
    for (const auto &[rule, page, typed, switches, words] : rows) {
        const SearchedPage searched(page, typed, switches);
        EXPECT_EQ(searched.Hits(), words) << rule;
        EXPECT_EQ(searched.Marked(), words) << rule;
    }
}

TEST(HitFinder, TellsWhatStandsNearEachOther)
{
    const QByteArray far(NearLetters, 'x');
    const SearchedPage page("one " + far + " two one " + far + " one three two " + far + " three", u"one two three"_s);
    EXPECT_EQ(page.Hits(), u"one|two|one|one|three|two|three"_s);
    QString isNear;
    for (qsizetype hit = 0; hit < std::ssize(page.hits.begins); ++hit)
        isNear += page.hits.IsNear(hit) ? u'1' : u'0';
    EXPECT_EQ(isNear, u"0001110"_s);
    EXPECT_EQ(page.hits.FirstNear(), 3);

    EXPECT_EQ(SearchedPage("one " + far + " two", u"one two"_s).hits.FirstNear(), 2);
    EXPECT_EQ(SearchedPage("x one", u"one"_s).hits.FirstNear(), 0); // a single word is near itself
    // A word inside another one is there, too.
    const SearchedPage inside("kathina", u"kathina thi"_s);
    EXPECT_EQ(inside.Hits(), u"kathina"_s);
    EXPECT_EQ(inside.hits.partsThere, 3U);
    EXPECT_TRUE(inside.hits.IsNear(0));
}

TEST(HitFinder, GivesTheWordsAround)
{
    const QByteArray words = QByteArray("mọi ").repeated(100);
    const EverywhereHit middle = SearchedPage("<p>" + words + "<b>Ñā</b>ṇa</p>\r\n" + words, u"nana"_s).Hit(0);
    EXPECT_THAT(middle.before.toStdString(), testing::MatchesRegex("…(mọi )+"));
    EXPECT_EQ(middle.hit, u"Ñāṇa"_s);
    EXPECT_THAT(middle.after.toStdString(), testing::MatchesRegex("( mọi)+…"));
    EXPECT_LE(middle.before.size(), 82);

    const EverywhereHit whole = SearchedPage("<title>t</title>One two <i>three</i>", u"two"_s).Hit(0);
    EXPECT_EQ(whole.before + u'|' + whole.after, u"One | three"_s);

    // The source has changed since.
    EverywhereHit gone;
    SetWords(gone, "a", Markup::Html, {{0, 0}, {2000, 5000}}, 2500, 3);
    EXPECT_EQ(gone.hit, QString());
}

TEST(HitFinder, SearchesTwentyMegabytesInPieces)
{
    const QByteArray line = "<p class=x>Bhikkhu nāma yo koci; vị tỳ khưu học điều này.</p>\n";
    const qsizetype lines = 20'000'000 / line.size();
    const SearchedPage page(line.repeated(lines) + "K&#7789;<i>h</i>ina" + line.repeated(9), u"kthina"_s);
    EXPECT_EQ(page.Hits(), u"Kṭhina"_s);
    EXPECT_GT(page.pieces, 20);
    EXPECT_EQ(page.Hit(0).before, u"…koci; vị tỳ khưu học điều này. Bhikkhu nāma yo koci; vị tỳ khưu học điều này. "_s);
    EXPECT_TRUE(page.Hit(0).after.startsWith(u" Bhikkhu"_s));
}

} // namespace
