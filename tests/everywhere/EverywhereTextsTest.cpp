#include "everywhere/EverywhereTexts.h"

#include "base/InterfaceLanguage.h"
#include "everywhere/EverywhereQuery.h"
#include "stores/Schema.h"

#include <gmock/gmock.h>

#include <tuple>

using namespace Qt::StringLiterals;

namespace {

class EverywhereTexts : public testing::Test
{
protected:
    ~EverywhereTexts() override { InterfaceLang = 0; }

    static EverywhereLine TextLine(const QString &text, const QString &group, int count)
    {
        EverywhereLine line;
        line.isText = true;
        line.text = text;
        line.group = group;
        line.count = count;
        return line;
    }
    static EverywhereLine HitLine(const QString &text, const QString &before, const QString &hit, const QString &after)
    {
        EverywhereLine line = TextLine(text, u"Nhóm"_s, 0);
        line.isText = false;
        line.place = u"Pāli"_s;
        line.before = before;
        line.hit = hit;
        line.after = after;
        return line;
    }
};

} // namespace

TEST_F(EverywhereTexts, TellWhatIsSoughtHowAndWhere)
{
    EverywhereSwitches all, some, none;
    some = {.vietnamese = false,
            .english = false,
            .marks = false,
            .exactCase = true,
            .exactMarks = true,
            .wholeWords = true};
    none = {.pali = false, .vietnamese = false, .english = false, .names = false, .marks = false};
    for (const auto &[language, typed, switches, told] :
         {std::tuple(0, u" %2 "_s, all, u"Tìm “%2”; hoa thường như nhau, không kể dấu; ở khắp nơi."_s),
          {1, u"ty \"khuu ni\""_s, some,
           u"Looking for “ty” and “khuu ni” in one text; exact case, exact accents, whole words; "
           "in Pāli pages and names of texts."_s},
          {2, u"ty"_s, none, u"Nowhere to look: switch on a language, the names or the marks."_s},
          {1, u" \t"_s, all,
           u"Type the words to find. Several words: all of them in one text. “In quotes”: a phrase."_s},
          {1, QString(70, u'a'), all,
           u"Looking for “"_s + QString(60, u'a') + u"…”; any case, any accents; everywhere."_s}}) {
        InterfaceLang = language;
        EXPECT_EQ(SoughtText(EverywhereQuery(typed, switches)).toStdString(), told.toStdString());
    }
}

TEST_F(EverywhereTexts, TellCountsAndTheWayThere)
{
    InterfaceLang = 1;
    for (const auto &[counts, told] :
         {std::pair(EverywhereCounts{.hits = 3, .texts = 1}, "3 places in 1 text"),
          {EverywhereCounts{.hits = 1, .texts = 1, .isRunning = true, .textsDone = 7, .textsInAll = 9},
           "1 place in 1 text  ·  7/9 looked at"},
          {EverywhereCounts{.isRunning = true, .textsInAll = 9}, "0/9 looked at"},
          {EverywhereCounts{.failures = 2}, "Nothing found  ·  2 pages can't be read"},
          {EverywhereCounts{.hits = 9, .texts = 2, .isListCut = true},
           "9 places in 2 texts  ·  the list has only the first"}})
        EXPECT_EQ(CountsText(counts).toStdString(), told);
}

TEST_F(EverywhereTexts, NameThePlaceAndTheTextInTheInterfaceLanguage)
{
    EverywhereHit hit;
    hit.language = PageMode::English;
    EXPECT_EQ(PlaceText(hit), u"Anh"_s);
    hit.kind = EverywhereKind::Name;
    EXPECT_EQ(PlaceText(hit), u"Tên: Anh"_s);
    hit.kind = EverywhereKind::Mark;
    hit.field = EverywhereField::Note;
    EXPECT_EQ(PlaceText(hit), u"Ghi chép: ghi chú"_s);
    EXPECT_EQ(ShownName({u"Pāli"_s, u"Việt"_s, u"English"_s}), u"Việt"_s);
    InterfaceLang = 1;
    EXPECT_EQ(ShownName({u"Pāli"_s, u"Việt"_s, u"English"_s}), u"Pāli"_s);
    EXPECT_EQ(ShownName({{}, {}, u"English"_s}), u"English"_s);
}

TEST_F(EverywhereTexts, ListIsTextATableAndAPageAndNothingInItIsMarkUp)
{
    const QList<EverywhereLine> lines{TextLine(u"A<b>&"_s, u"Nhóm"_s, 2),
                                      HitLine(u"A<b>&"_s, u"…x "_s, u"y%1"_s, u" z\t…"_s),
                                      HitLine(u"A<b>&"_s, {}, u"<i>"_s, u"\n"_s)};
    EXPECT_EQ(ListAsText(lines, u"Tìm %1"_s).toStdString(),
              "Tìm %1\n\nA<b>&  ·  Nhóm (2)\n  Pāli: …x y%1 z …\n  Pāli: <i> \n");
    EXPECT_EQ(ListAsTable(lines).toStdString(), "Bài\tNhóm\tỞ đâu\tTrước\tChỗ tìm thấy\tSau\n"
                                                "A<b>&\tNhóm\tPāli\t…x \ty%1\t z …\n"
                                                "A<b>&\tNhóm\tPāli\t\t<i>\t \n");
    const std::string page = ListAsPage(lines, u"<u>"_s).toStdString();
    EXPECT_THAT(page, testing::HasSubstr("<html lang=\"vi\">"));
    EXPECT_THAT(page, testing::HasSubstr("<h1>&lt;u&gt;</h1>\n<h2>A&lt;b&gt;&amp;  ·  Nhóm (2)</h2>\n"
                                         "<p>Pāli: …x <b>y%1</b> z\t…</p>\n<p>Pāli: <b>&lt;i&gt;</b>\n</p>\n"));
}
