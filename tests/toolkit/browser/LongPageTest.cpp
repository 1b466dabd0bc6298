#include "toolkit/browser/BrowserTest.h"

using namespace Qt::StringLiterals;

namespace {

/// Plain paragraphs of differing length, with a place to find in the middle.
QByteArray LongPage(int paragraphs)
{
    const QByteArray sentence = u"Tại sông Hằng, vị tỳ khưu ấy đã nói như vầy: evaṃ vutte. "_s.toUtf8();
    QByteArray page = "<style>p { font-size: 16px; margin: 8px 0 }</style>"
                      "<body><p><a id=a href='#middle'>link</a></p>";
    for (int number = 0; number < paragraphs; ++number) {
        if (number == paragraphs / 2)
            page += "<p id=middle>needle in the middle</p>";
        page += "<p>" + sentence.repeated(1 + number * 7 % 12) + "</p>";
    }
    return page;
}

const QString visibility = u"getComputedStyle(document.querySelector('p')).contentVisibility"_s;

class LongPageControl : public BrowserTest
{
protected:
    /// Waits until the place is at the top of the view, and stays there from one painting to the next.
    bool LandsOn(const QString &place)
    {
        Value(u"self.rest = 0, (function watch() {"
              "    rest = Math.abs(%1.top) < 1 ? rest + 1 : 0;"
              "    requestAnimationFrame(watch);"
              "})()"_s.arg(place));
        return Becomes(u"rest > 4"_s); // more frames than a late estimate takes to move it
    }
};

} // namespace

TEST_F(LongPageControl, IsAsLongAsInTheBareEngineWithinATenth)
{
    LoadBytes(LongPage(100));
    EXPECT_EQ(Text(visibility), u"visible"_s) << "shorter pages are left as they are";
    LoadBytes(LongPage(2500));
    EXPECT_EQ(Text(visibility), u"auto"_s);
    EXPECT_FALSE(Text(u"document.documentElement.outerHTML"_s).contains(u"visibility"_s)) << "a trace in the page";
    const QString height = u"document.documentElement.scrollHeight"_s;
    const qreal estimated = Value(height).toReal();
    const auto left = [this] {
        QByteArray pdf;
        Control().page()->printToPdf([&](const QByteArray &bytes) { pdf = bytes; });
        EXPECT_TRUE(WaitFor([&] { return !pdf.isEmpty(); }, 20000));
        const QString all = u"getSelection().selectAllChildren(document.body), getSelection().toString()"_s;
        return std::pair(Text(all), pdf.count("/Type /Page\n"));
    };
    const auto copiedAndPrinted = left();
    // The engine's own way: the same page, the rule for long ones taken back.
    const qreal whole = Value(u"document.adoptedStyleSheets = [], "_s + height).toReal();
    EXPECT_NEAR(estimated / whole, 1, 0.1);
    EXPECT_EQ(copiedAndPrinted, left());
    EXPECT_GT(copiedAndPrinted.second, 5);
    // A zoom changes the width: the estimate follows.
    LoadBytes(LongPage(2500));
    Control().SetZoomPercent(200);
    EXPECT_TRUE(Becomes(u"document.documentElement.scrollHeight > %1"_s.arg(whole * 1.6)));
}

TEST_F(LongPageControl, LandsExactlyOnAnAnchorAndOnAHit)
{
    LoadBytes(LongPage(2500));
    Click(u"#a"_s);
    EXPECT_TRUE(LandsOn(u"document.getElementById('middle').getBoundingClientRect()"_s));
    LoadBytes(LongPage(2500));
    EXPECT_EQ(Control().SearchAndHighlight(u"needle"_s, {}, ScrollMode::None, {}, u"Yellow"_s), 1);
    EXPECT_TRUE(Control().ScrollToFirst(u"Needle"_s));
    EXPECT_TRUE(LandsOn(u"document.querySelector('font').getClientRects()[0]"_s));
}
