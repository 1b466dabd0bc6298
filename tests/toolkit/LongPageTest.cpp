#include "support/WaitFor.h"
#include "toolkit/BrowserTest.h"

#include <QBuffer>
#include <QPdfDocument>
#include <QWebEnginePage>

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

int PdfPages(QWebEnginePage &page)
{
    QByteArray pdf;
    page.printToPdf([&](const QByteArray &bytes) { pdf = bytes; });
    EXPECT_TRUE(WaitFor([&] { return !pdf.isEmpty(); }, 20000));
    QBuffer device(&pdf);
    device.open(QIODevice::ReadOnly);
    QPdfDocument document;
    document.load(&device);
    return document.pageCount();
}

const QString topOfMiddle = u"document.getElementById('middle').getBoundingClientRect().top"_s;

} // namespace

class LongPageControl : public BrowserTest
{};

TEST_F(LongPageControl, IsAsLongAsInTheBareEngineWithinATenth)
{
    LoadBytes(LongPage(2500));
    EXPECT_EQ(Text(u"getComputedStyle(document.querySelector('p')).contentVisibility"_s), u"auto"_s);
    EXPECT_FALSE(Text(u"document.documentElement.outerHTML"_s).contains(u"visibility"_s)) << "a trace in the page";
    const QString height = u"document.documentElement.scrollHeight"_s;
    const qreal estimated = Value(height).toReal();
    // The true height: every paragraph rendered.
    const qreal whole =
        Value(u"document.querySelectorAll('p').forEach((p) => p.style.contentVisibility = 'visible'), "_s + height)
            .toReal();
    EXPECT_GT(whole, 50000);
    EXPECT_NEAR(estimated / whole, 1, 0.1);

    // A zoom changes the width: the estimate follows.
    LoadBytes(LongPage(2500));
    Control().SetZoomPercent(200);
    EXPECT_TRUE(Becomes(u"document.documentElement.scrollHeight > %1"_s.arg(whole * 1.6)));
}

TEST_F(LongPageControl, CopiesAndPrintsAsTheBareEngine)
{
    // Long by its bytes alone: what is compared here does not depend on the number of paragraphs.
    LoadBytes(LongPage(300) + "<!--" + QByteArray(1'000'000, 'x') + "-->");
    EXPECT_EQ(Text(u"getComputedStyle(document.querySelector('p')).contentVisibility"_s), u"auto"_s);
    Control().SelectAll();
    EXPECT_TRUE(WaitFor([&] { return !Control().GetSelectedText().isEmpty(); }));
    const QString text = Control().GetSelectedText();
    const int pages = PdfPages(*Control().page());

    // Short pages are shown as the engine does it: the same one, its rule for long ones taken back.
    Value(u"document.adoptedStyleSheets = []"_s);
    EXPECT_EQ(text, Text(u"getSelection().selectAllChildren(document.body), getSelection().toString()"_s));
    EXPECT_EQ(pages, PdfPages(*Control().page()));
    EXPECT_GT(pages, 5);
}

TEST_F(LongPageControl, LandsExactlyOnAnAnchorAndOnAHit)
{
    LoadBytes(LongPage(2500));
    QTest::mouseClick(Input(), Qt::LeftButton, Qt::NoModifier, PlaceOf(u"#a"_s));
    EXPECT_TRUE(Becomes(u"Math.abs(%1) < 1"_s.arg(topOfMiddle)));
    Pause(200);
    EXPECT_LT(std::abs(Value(topOfMiddle).toReal()), 1) << "it moved away again";

    LoadBytes(LongPage(2500));
    EXPECT_EQ(Control().SearchAndHighlight(u"needle"_s, {}, ScrollMode::None, {}, u"Yellow"_s), 1);
    EXPECT_TRUE(Control().ScrollToFirst(u"Needle"_s));
    Pause(300);
    EXPECT_LT(std::abs(Value(u"document.querySelector('font').getClientRects()[0].top"_s).toReal()), 1);
}

TEST_F(LongPageControl, LeavesShorterPagesAsTheyAre)
{
    LoadBytes(LongPage(100));
    EXPECT_EQ(Text(u"getComputedStyle(document.querySelector('p')).contentVisibility"_s), u"visible"_s);
}
