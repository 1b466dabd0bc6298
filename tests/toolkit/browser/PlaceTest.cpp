#include "toolkit/browser/BrowserTest.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int paragraphSize = 700; // characters, several lines in any window

QByteArray Paragraphs(int count, const QByteArray &before = {}, const QByteArray &after = {})
{
    QByteArray page = before;
    for (int number = 0; number < count; ++number)
        page += "<p>" + QByteArray::number(number) + QByteArray(" evam me").repeated(paragraphSize / 8) + "</p>\n";
    return page + after;
}

class PlaceInPage : public BrowserTest
{
protected:
    PagePlace Top()
    {
        std::optional<PagePlace> top;
        EXPECT_TRUE(Control().AskPlace([&](const PagePlace &place) { top = place; }));
        EXPECT_TRUE(WaitFor([&] { return top.has_value(); }));
        return top.value_or(PagePlace());
    }
    static void ExpectSameLine(const PagePlace &place, const PagePlace &other)
    {
        constexpr double line = 130; // characters, at most
        EXPECT_EQ(place.block, other.block);
        EXPECT_LT(std::abs(place.share - other.share) * paragraphSize, line);
    }
    /// Where the text of an element begins, in pixels from the view's top.
    double TopOf(const char *selector)
    {
        return Value(u"document.querySelector('%1').getClientRects()[0].top"_s.arg(QLatin1StringView(selector)))
            .toDouble();
    }
};

} // namespace

TEST_F(PlaceInPage, EachPieceOfTextIsABlockAndARowIsOne)
{
    Load(u"<h1><span class=a>Head</span></h1> <p><span class=b>one <i>two</i></span></p><p> </p>"
         "<div>three<br><span class=c>four</span></div><table>"
         "<tr><td><p><span class=d>left</span></p></td><td><p>right</p><p><span class=e>lower</span></p></td></tr>"
         "<tr><td><span class=f>next</span></td></tr></table><p><span class=g>last</span></p>"
         "<div style='height:3000px'></div>"_s);
    for (const auto &[place, element] : {std::pair(PagePlace{1, 0, 0, {}}, ".b"),
                                         {{3, 0, 0, {}}, ".c"},
                                         {{4, 0, 0, {}}, ".d"},
                                         {{4, 2, 0, {}}, ".e"},
                                         {{5, 0, 0, {}}, ".f"},
                                         {{6, 0, 0, {}}, ".g"},
                                         {{60, 0, 0, {}}, ".g"},
                                         {{0, 0, 0.3, {}}, ".a"}}) {
        Control().GoToPlace(place);
        EXPECT_NEAR(TopOf(element), 0, 1) << element;
    }
    Control().GoToPlace({});
    EXPECT_EQ(Value(u"scrollY"_s).toInt(), 0) << "the beginning is the page's, not that of its first line";
}

TEST_F(PlaceInPage, AnIdOfThePageIsFoundWhereverItStands)
{
    const QByteArray end = "<div style='height:3000px'></div>";
    LoadBytes(Paragraphs(9) + "<p><a id='pli:1.1'></a>a <span id='pli:1.2' class=s>b</span></p>" + end);
    Control().GoToPlace({0, 0, 0, u"1.2"_s});
    EXPECT_NEAR(TopOf(".s"), 0, 1);
    const PagePlace place = Top();
    EXPECT_EQ(place.segment, u"1.2"_s);
    LoadBytes("<p id='en:1.1'>a</p><p id='en:1.2'><span class=s>b</span></p>" + end);
    Control().GoToPlace(place);
    EXPECT_NEAR(TopOf(".s"), 0, 1) << "another language has other blocks before";
    LoadBytes(Paragraphs(30));
    Control().GoToPlace({7, 0, 0.5, u"9.9"_s});
    EXPECT_EQ(Top().block, 7) << "without that id the block counts";
}

TEST_F(PlaceInPage, TheSameLineComesBackInAnotherDressAndDoesNotDrift)
{
    for (const int paragraphs : {80, 2000}) { // of a long page most paragraphs are not rendered
        SCOPED_TRACE(paragraphs);
        LoadBytes(Paragraphs(paragraphs));
        Control().GoToPlace({paragraphs / 2, 0, 0.5, {}});
        const PagePlace place = Top();
        ExpectSameLine(place, {paragraphs / 2, 0, 0.5, {}});
        PagePlace again = place;
        for (const char *margin : {"", "<blockquote> <blockquote>\r", "<div style='font-size:150%'>", ""}) {
            LoadBytes(Paragraphs(paragraphs, margin));
            Control().GoToPlace(again);
            again = Top();
            ExpectSameLine(again, place);
        }
    }
}

TEST_F(PlaceInPage, IsToldOfThePageThatWasOnShowWhenAsked)
{
    LoadBytes(Paragraphs(80));
    Control().GoToPlace({40, 0, 0.5, {}});
    std::optional<PagePlace> told;
    EXPECT_TRUE(Control().AskPlace([&](const PagePlace &place) { told = place; }));
    Control().LoadFromString("<p>other</p>");
    EXPECT_FALSE(Control().AskPlace([](const PagePlace &) { FAIL(); })) << "nothing is complete";
    EXPECT_TRUE(Control().WaitComplete());
    ASSERT_TRUE(told) << "it comes before the other page";
    ExpectSameLine(*told, {40, 0, 0.5, {}});
}
