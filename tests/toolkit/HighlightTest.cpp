#include "toolkit/BrowserTest.h"

using namespace Qt::StringLiterals;

namespace {

/// The text that shows the colour, in the order of the page.
const QString yellowText = uR"([...document.querySelectorAll('font')]
    .filter((e) => getComputedStyle(e).backgroundColor === 'rgb(255, 255, 0)').map((e) => e.textContent).join('|'))"_s;

struct Hits
{
    const char *rule;
    QString page;
    QString text;
    FindFlags flags;
    int count;
    QString coloured; ///< parts parted by "|"
};

} // namespace

class Highlight : public BrowserTest
{
protected:
    int Mark(const QString &text, const QString &colour = u"Yellow"_s, FindFlags flags = {},
             ScrollMode scroll = ScrollMode::None)
    {
        return Control().SearchAndHighlight(text, flags, scroll, {}, colour);
    }
};

class HighlightTable : public Highlight, public testing::WithParamInterface<Hits>
{};

TEST_P(HighlightTable, ColoursEveryHit)
{
    Load(GetParam().page);
    const QString before = Text(u"document.body.textContent"_s);
    EXPECT_EQ(Mark(GetParam().text, u"#FFFF00"_s, GetParam().flags), GetParam().count);
    EXPECT_EQ(Text(yellowText), GetParam().coloured);
    EXPECT_EQ(Text(u"document.body.textContent"_s), before);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, HighlightTable,
    testing::Values(
        Hits{"None", u"<p>text"_s, u"other"_s, {}, 0, u""_s}, Hits{"EmptyText", u"<p>text"_s, u""_s, {}, 0, u""_s},
        Hits{"CaseIgnored", u"<p>Phẩm PHẨM phẩm"_s, u"pHẩM"_s, {}, 3, u"Phẩm|PHẨM|phẩm"_s},
        Hits{"CaseMatched", u"<p>Dhamma dhamma"_s, u"dhamma"_s, FindFlag::MatchCase, 1, u"dhamma"_s},
        Hits{"DiacriticsCount", u"<p>phâm phẩm pham"_s, u"pham"_s, {}, 1, u"pham"_s},
        Hits{"StrokeCounts", u"<p>di đi"_s, u"đi"_s, {}, 1, u"đi"_s},
        Hits{"NothingIsNormalised", u"<p>\u1EA9 a\u0302\u0309"_s, u"a\u0302\u0309"_s, {}, 1, u"a\u0302\u0309"_s},
        Hits{"OverlapIsColouredWhole", u"<p>xanananax"_s, u"ana"_s, {}, 3, u"ananana"_s},
        Hits{"NeighboursJoin", u"<p>aaaa"_s, u"aa"_s, {}, 3, u"aaaa"_s},
        Hits{"OverElementBorder", u"<p>Dh<b>am</b>ma"_s, u"dhamma"_s, {}, 1, u"Dh|am|ma"_s},
        Hits{"NotOverParagraphs", u"<p>dham</p><p>ma</p>"_s, u"dhamma"_s, {}, 0, u""_s},
        Hits{"NotOverCells", u"<table><tr><td>dham<td>ma</table>"_s, u"dhamma"_s, {}, 0, u""_s},
        Hits{"NotOverBreak", u"<p>dham<br>ma"_s, u"dhamma"_s, {}, 0, u""_s},
        Hits{"LineEndIsABlank", u"<p>một\r\n   hai"_s, u"một hai"_s, {}, 1, u"một\n   hai"_s},
        Hits{"NoBreakBlankDiffers", u"<p>một&nbsp;hai một hai"_s, u"một hai"_s, {}, 1, u"một hai"_s},
        Hits{"SharpS", u"<p>Straße STRASSE STRAẞE"_s, u"straße"_s, {}, 2, u"Straße|STRAẞE"_s},
        Hits{"DottedCapitalGrows", u"<p>xİy z"_s, u"y"_s, {}, 1, u"y"_s},
        Hits{"DottedCapitalIsWhole", u"<p>İi"_s, u"i"_s, {}, 1, u"i"_s},
        Hits{"DottedCapitalFound", u"<p>aİb"_s, u"İb"_s, {}, 1, u"İb"_s},
        Hits{"SigmaWithoutContext", u"<p>ΟΔΟΣ"_s, u"οδοσ"_s, {}, 1, u"ΟΔΟΣ"_s},
        Hits{"BeyondTheFirstPlane", u"<p>a😀b😀"_s, u"😀"_s, {}, 2, u"😀|😀"_s},
        Hits{"EntitiesAreText", u"<p>a &lt;b&gt; c"_s, u"<B>"_s, {}, 1, u"<b>"_s},
        Hits{"WholeWord", u"<p>kinh, kinhs (Kinh) mkinh"_s, u"kinh"_s, FindFlag::WholeWord, 2, u"kinh|Kinh"_s},
        Hits{"WholeWordWithMarks", u"<p>ta ta\u0323 ṭa"_s, u"ta"_s, FindFlag::WholeWord, 1, u"ta"_s},
        Hits{"BothFlags", u"<p>Kinh kinh Kinhs"_s, u"Kinh"_s, FindFlags(FindFlag::WholeWord) | FindFlag::MatchCase, 1,
             u"Kinh"_s},
        Hits{
            "NotInScriptOrStyle", u"<body><script>ana</script><style>ana{}</style><p>ana"_s, u"ana"_s, {}, 1, u"ana"_s},
        Hits{"QuotesAndSlashes", u"<p>a'b\"c\\d</p>"_s, u"'b\"c\\"_s, {}, 1, u"'b\"c\\"_s},
        Hits{"InHeadOfTheFallbackPage",
             u"<HTML>\r<head>\r<h3><font color=red>Tựa</font></h3></head></HTML>"_s,
             u"tựa"_s,
             {},
             1,
             u"Tựa"_s}),
    [](const auto &row) { return std::string(row.param.rule); });

TEST_F(Highlight, LaterColourWinsAndNeverNests)
{
    Load(u"<p>one banana two"_s);
    Mark(u"banana"_s, u"#00FF00"_s);
    EXPECT_EQ(Mark(u"nan"_s), 1);
    EXPECT_EQ(Text(yellowText), u"nan"_s);
    for (int pass = 0; pass < 5; ++pass)
        Mark(u"banana"_s);
    EXPECT_EQ(Text(yellowText), u"ba|nan|a"_s);
    EXPECT_EQ(Value(u"document.querySelectorAll('font font').length"_s).toInt(), 0);
    EXPECT_EQ(Value(u"document.querySelectorAll('font').length"_s).toInt(), 3);
    EXPECT_EQ(Text(u"document.body.textContent"_s), u"one banana two"_s);
}

TEST_F(Highlight, GivesTheForegroundColourToo)
{
    Load(u"<p>text"_s);
    EXPECT_EQ(Control().SearchAndHighlight(u"text"_s, {}, ScrollMode::None, u"#FF0000"_s, {}), 1);
    EXPECT_EQ(Text(u"getComputedStyle(document.querySelector('font')).color"_s), u"rgb(255, 0, 0)"_s);
    EXPECT_EQ(Text(u"document.querySelector('font').style.backgroundColor"_s), u""_s);
}

TEST_F(Highlight, ReachesDocumentsInFrames)
{
    Load(u"<iframe srcdoc='<p>inner ana'></iframe>"_s);
    EXPECT_EQ(Mark(u"ana"_s), 1);
}

TEST_F(Highlight, WaitsForThePageAndColoursOverItsHandler)
{
    Control().OnDocumentComplete = [this] { Mark(u"text"_s, u"#00FF00"_s); };
    Control().LoadFromString("<p>text");
    EXPECT_FALSE(Control().IsComplete());
    EXPECT_EQ(Mark(u"text"_s), 1);
    EXPECT_EQ(Text(yellowText), u"text"_s);
}

TEST_F(Highlight, ColoursManyHits)
{
    constexpr int hitCount = 20000;
    Load(u"<p>kinh một hai ba bốn năm</p>"_s.repeated(hitCount));
    EXPECT_EQ(Mark(u"kinh"_s), hitCount);
}

struct Scroll
{
    const char *name;
    ScrollMode mode;
    QString topmost; ///< id of the element at the top of the view
};

class HighlightScroll : public Highlight, public testing::WithParamInterface<Scroll>
{};

TEST_P(HighlightScroll, BringsAHitToTheTop)
{
    const QString gap = u"<div style='height:2000px'></div>"_s;
    Load(u"<p id=start>x</p>"_s + gap + u"<p id=one>kinh</p>"_s + gap + u"<p id=two>kinh</p>"_s + gap);
    EXPECT_EQ(Mark(u"kinh"_s, u"Yellow"_s, {}, GetParam().mode), 2);
    EXPECT_TRUE(Becomes(u"document.getElementById('%1').getBoundingClientRect().top < 40 &&"
                        " document.getElementById('%1').getBoundingClientRect().top > -10"_s.arg(GetParam().topmost)));
}

INSTANTIATE_TEST_SUITE_P(Modes, HighlightScroll,
                         testing::Values(Scroll{"None", ScrollMode::None, u"start"_s},
                                         Scroll{"First", ScrollMode::First, u"one"_s},
                                         Scroll{"Last", ScrollMode::Last, u"two"_s}),
                         [](const auto &row) { return std::string(row.param.name); });

TEST_F(Highlight, ScrollsToTheFirstOccurrence)
{
    const QString gap = u"<div style='height:2000px'></div>"_s;
    Load(u"<p style='display:none'>Đại Kinh</p>"_s + gap + u"<p id=one>đại <b>KINH</b></p>"_s + gap);
    EXPECT_TRUE(Control().ScrollToFirst(u"Đại kinh"_s));
    EXPECT_TRUE(Becomes(u"Math.abs(document.getElementById('one').getBoundingClientRect().top) < 8"_s));
    EXPECT_FALSE(Control().ScrollToFirst(u"not there"_s));
}
