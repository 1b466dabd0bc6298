#include "toolkit/browser/BrowserTest.h"

using namespace Qt::StringLiterals;

namespace {

/// The text that shows the colour, in the order of the page.
const QString yellowText = uR"([...document.querySelectorAll('font')]
    .filter((e) => getComputedStyle(e).backgroundColor === 'rgb(255, 255, 0)').map((e) => e.textContent).join('|'))"_s;

class Highlight : public BrowserTest
{
protected:
    int Mark(const QString &text, const QString &colour = u"Yellow"_s, FindFlags flags = {},
             ScrollMode scroll = ScrollMode::None)
    {
        return Control().SearchAndHighlight(text, flags, scroll, {}, colour);
    }
};

} // namespace

TEST_F(Highlight, ColoursEveryHit)
{
    const FindFlags none, wholeWord = FindFlag::WholeWord;
    const struct
    {
        const char *rule;
        QString page, text;
        FindFlags flags;
        int count;
        QString coloured; ///< parts parted by "|"
    } rows[]{
        {"empty text", u"<p>text"_s, u""_s, none, 0, u""_s},
        {"case ignored", u"<p>Phẩm PHẨM phẩm"_s, u"pHẩM"_s, none, 3, u"Phẩm|PHẨM|phẩm"_s},
        {"diacritics count", u"<p>phâm phẩm pham"_s, u"pham"_s, none, 1, u"pham"_s},
        {"the stroke counts", u"<p>di đi"_s, u"đi"_s, none, 1, u"đi"_s},
        {"nothing is normalised", u"<p>\u1EA9 a\u0302\u0309"_s, u"a\u0302\u0309"_s, none, 1, u"a\u0302\u0309"_s},
        {"an overlap is coloured whole", u"<p>xanananax"_s, u"ana"_s, none, 3, u"ananana"_s},
        {"over the border of elements", u"<p>Dh<b>am</b>ma"_s, u"dhamma"_s, none, 1, u"Dh|am|ma"_s},
        {"not over a break", u"<p>dham<br>ma"_s, u"dhamma"_s, none, 0, u""_s},
        {"a line end is a blank", u"<p>một\r\n   hai"_s, u"một hai"_s, none, 1, u"một\n   hai"_s},
        {"a no-break blank differs", u"<p>một&nbsp;hai một hai"_s, u"một hai"_s, none, 1, u"một hai"_s},
        {"sharp s", u"<p>Straße STRASSE STRAẞE"_s, u"straße"_s, none, 2, u"Straße|STRAẞE"_s},
        {"a dotted capital grows", u"<p>xİy z"_s, u"y"_s, none, 1, u"y"_s},
        {"a dotted capital is whole", u"<p>İi"_s, u"i"_s, none, 1, u"i"_s},
        {"sigma without context", u"<p>ΟΔΟΣ"_s, u"οδοσ"_s, none, 1, u"ΟΔΟΣ"_s},
        {"beyond the first plane", u"<p>a😀b😀"_s, u"😀"_s, none, 2, u"😀|😀"_s},
        {"entities are text", u"<p>a &lt;b&gt; c"_s, u"<B>"_s, none, 1, u"<b>"_s},
        {"whole word", u"<p>kinh, kinhs (Kinh) mkinh"_s, u"kinh"_s, wholeWord, 2, u"kinh|Kinh"_s},
        {"whole word with marks", u"<p>ta ta\u0323 ṭa"_s, u"ta"_s, wholeWord, 1, u"ta"_s},
        {"not in a script", u"<script>ana</script><style>ana{}</style><p>ana"_s, u"ana"_s, none, 1, u"ana"_s},
        {"quotes and slashes", u"<p>a'b\"c\\d</p>"_s, u"'b\"c\\"_s, none, 1, u"'b\"c\\"_s},
        {"in the head of the fallback page", u"<HTML>\r<head>\r<h3><font color=red>Tựa</font></h3></head></HTML>"_s,
         u"tựa"_s, none, 1, u"Tựa"_s},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.rule);
        Load(row.page);
        const QString before = Text(u"document.body.textContent"_s);
        EXPECT_EQ(Mark(row.text, u"#FFFF00"_s, row.flags), row.count);
        EXPECT_EQ(Text(yellowText), row.coloured);
        EXPECT_EQ(Text(u"document.body.textContent"_s), before);
    }
}

TEST_F(Highlight, LaterColourWinsAndNeverNests)
{
    Control().OnDocumentComplete = [this] { Mark(u"banana"_s, u"#00FF00"_s); };
    Control().LoadFromString("<p>one banana two");
    EXPECT_EQ(Mark(u"nan"_s), 1) << "waits for the page, and colours over its handler";
    EXPECT_EQ(Text(yellowText), u"nan"_s);
    for (int pass = 0; pass < 5; ++pass)
        Mark(u"banana"_s);
    EXPECT_EQ(Text(yellowText), u"ba|nan|a"_s);
    EXPECT_EQ(Value(u"document.querySelectorAll('font').length"_s).toInt(), 3);
    EXPECT_EQ(Control().SearchAndHighlight(u"two"_s, {}, ScrollMode::None, u"#FF0000"_s, {}), 1);
    EXPECT_EQ(Text(u"(s => s.color + s.backgroundColor)([...document.querySelectorAll('font')].pop().style)"_s),
              u"rgb(255, 0, 0)"_s);
}

TEST_F(Highlight, BringsAHitToTheTop)
{
    const QString gap = u"<div style='height:2000px'></div>"_s;
    const QString page = u"<p id=start>x</p>"_s + gap + u"<p id=one>kinh</p>"_s + gap + u"<p id=two>kinh</p>"_s + gap;
    const auto isAtTheTop = [this](const QString &id) {
        return Becomes(u"Math.abs(document.getElementById('%1').getBoundingClientRect().top - 15) < 25"_s.arg(id));
    };
    for (const auto &[mode, id] :
         {std::pair(ScrollMode::None, u"start"_s), {ScrollMode::First, u"one"_s}, {ScrollMode::Last, u"two"_s}}) {
        Load(page);
        EXPECT_EQ(Mark(u"kinh"_s, u"Yellow"_s, {}, mode), 2);
        EXPECT_TRUE(isAtTheTop(id)) << qPrintable(id);
    }
    Load(u"<p style='display:none'>Kinh</p>"_s + page);
    EXPECT_TRUE(Control().ScrollToFirst(u"KiNh"_s));
    EXPECT_TRUE(isAtTheTop(u"one"_s));
    EXPECT_FALSE(Control().ScrollToFirst(u"not there"_s));
}
