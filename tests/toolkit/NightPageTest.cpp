#include "support/WaitFor.h"
#include "toolkit/BrowserTest.h"

#include <QBuffer>
#include <QClipboard>
#include <QColor>
#include <QGuiApplication>
#include <QMimeData>
#include <QPdfDocument>
#include <QRegularExpression>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

double Luminance(const QColor &colour)
{
    const auto linear = [](double share) {
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double Contrast(const QColor &one, const QColor &other)
{
    const auto [low, high] = std::minmax(Luminance(one), Luminance(other));
    return (high + 0.05) / (low + 0.05);
}

QColor Parsed(const QString &css)
{
    static const QRegularExpression parts(u"^rgb\\((\\d+), (\\d+), (\\d+)\\)$"_s);
    const auto match = parts.match(css);
    return match.hasMatch() ? QColor(match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt())
                            : QColor();
}

const QString grey = u"#E4E4E4"_s;
const QString tooColourful = [] {
    QString page;
    for (int number = 0; number < 20000; ++number)
        page += u"<p><span style='color:#%1'>word</span>"_s.arg(number, 6, 16, QLatin1Char('0'));
    return page + u"<p id=t>end"_s;
}();

struct Shown
{
    const char *rule;
    QString page;     ///< the text in question is in the element "t"
    QString expected; ///< a colour; "lighter" is one of the hue of `stored` with a contrast of 4.5
    QString ground = u"#000000"_s;
    QString stored = {};
    QString behind = {}; ///< what the contrast is measured against if not the ground of the page
};

} // namespace

class NightPage : public BrowserTest
{
protected:
    ~NightPage() override { Control().SetDarkGround(false); }

    void LoadOn(const QString &ground, const QString &page, bool isDark = true)
    {
        Control().SetHostCSS(u"body {background-color: %1}\r\np {\r\nline-height: 175%\r\n}\r\n"_s.arg(ground));
        Control().SetDarkGround(isDark);
        Load(page);
    }
    QColor ColourOf(const QString &selector)
    {
        return Parsed(Text(u"getComputedStyle(document.querySelector('%1')).color"_s.arg(selector)));
    }
};

class NightPageTable : public NightPage, public testing::WithParamInterface<Shown>
{};

TEST_P(NightPageTable, ShowsTextThatCanBeReadAndLeavesNoTrace)
{
    const Shown &row = GetParam();
    LoadOn(row.ground, row.page, false);
    const QString document = Text(u"document.documentElement.outerHTML"_s);
    LoadOn(row.ground, row.page);
    EXPECT_EQ(Text(u"document.documentElement.outerHTML"_s), document);
    const QColor shown = ColourOf(u"#t"_s);
    const QColor ground(row.behind.isEmpty() ? row.ground : row.behind);
    if (row.expected != u"lighter"_s) {
        EXPECT_EQ(shown.name(), QColor(row.expected).name());
        return;
    }
    const QColor stored(row.stored);
    EXPECT_GE(Contrast(shown, ground), 4.5) << qPrintable(shown.name());
    EXPECT_LT(Contrast(shown, ground), 5) << "lighter than need be: " << qPrintable(shown.name());
    if (stored.hslSaturation() > 0) {
        EXPECT_NEAR(shown.hslHueF(), stored.hslHueF(), 0.02) << qPrintable(shown.name());
    }
}

INSTANTIATE_TEST_SUITE_P(
    Rules, NightPageTable,
    testing::Values(
        Shown{"NoColourIsLight", u"<p id=t>a"_s, grey},
        Shown{"WhiteWhereGreyIsNotClear", u"<p id=t>a"_s, u"#FFFFFF"_s, u"#606060"_s},
        Shown{"TableWithoutType", u"<table><tr><td id=t>a"_s, grey},
        Shown{"TableWithType", u"<!DOCTYPE html><table><tr><td id=t>a"_s, grey},
        Shown{"TableWithoutTypeTakesNoColourAround", u"<font color=red><table><tr><td id=t>a"_s, grey},
        Shown{"ReadableStays", u"<p id=t style='color:#ff8800'>a"_s, u"#FF8800"_s},
        Shown{"ThreeToOneStays", u"<p id=t style='color:#5f5f5f'>a"_s, u"#5F5F5F"_s},
        Shown{"Inline", u"<p id=t style='margin:0;COLOR : navy'>a"_s, u"lighter"_s, u"#000000"_s, u"#000080"_s},
        Shown{"Important", u"<p style='color:#000 !important'><i><b id=t style='color:maroon !important'>a"_s,
              u"#800000"_s},
        Shown{"FontColour", u"<p><font id=t color='#800000'>a"_s, u"lighter"_s, u"#101020"_s, u"#800000"_s},
        Shown{"InheritedByElements", u"<p><font color='#800000'><b><i id=t>a"_s, u"lighter"_s, u"#101020"_s,
              u"#800000"_s},
        Shown{"BodyText", u"<body text='#000080'><p id=t>a"_s, u"lighter"_s, u"#202020"_s, u"#000080"_s},
        Shown{"BodyTextReachesTables", u"<body text='#ffcc00'><table><tr><td id=t>a"_s, u"#FFCC00"_s},
        Shown{"Link", u"<a id=t href='#x'>a"_s, u"lighter"_s, u"#000000"_s, u"#0000EE"_s},
        Shown{"LinkColourOfBody", u"<body link='#006000'><a id=t href='#x'>a"_s, u"lighter"_s, u"#000000"_s,
              u"#006000"_s},
        Shown{"AnchorIsNoLink", u"<p><a href='#x'>a</a><a id=t name=x>a"_s, grey},
        Shown{"RuleOfThePage", u"<style>p.n { color: hsl(240, 100%, 25%) }</style><p class=n id=t>a"_s, u"lighter"_s,
              u"#000000"_s, u"#000080"_s},
        Shown{"RuleForTheScreen",
              u"<style>@media screen { @supports (color: red) { p { color: navy } } }</style>"
              "<p id=t>a"_s,
              u"lighter"_s, u"#000000"_s, u"#000080"_s},
        Shown{"RuleForPaper", u"<style>@media print { p { color: yellow } }</style><p id=t>a"_s, grey},
        Shown{"ImportantRule",
              u"<style>p { color: rgb(255 0 0 / 100%) !important }</style><p id=t style='color:navy'>a"_s,
              u"#FF0000"_s},
        Shown{"RuleInPlaces",
              u"<style>b { color: lime } .x b { color: navy } .y .x b { color: red }</style>"
              "<p><b>a</b><p class=x><b>a</b><div class=y><p class=x><b id=t>a"_s,
              u"#FF0000"_s},
        Shown{"ExplicitBlackOnDarkGrey", u"<p id=t style='color:black'>a"_s, u"#000000"_s, u"#707070"_s},
        Shown{"NoColourOnDarkGrey", u"<p id=t>a"_s, u"#FFFFFF"_s, u"#707070"_s},
        Shown{"InheritIsNoColour", u"<p id=t style='color:inherit'>a"_s, grey},
        Shown{"CurrentColour", u"<p style='color:navy'><b id=t style='color:currentcolor'>a"_s, u"lighter"_s,
              u"#000000"_s, u"#000080"_s},
        Shown{"LightCellKeepsBlack", u"<table><tr><td bgcolor='#ffffcc'><p><b id=t>a"_s, u"#000000"_s},
        Shown{"LightRowKeepsBlack", u"<table><tr bgcolor='#eeeeee'><td id=t>a"_s, u"#000000"_s},
        Shown{"LightCellKeepsStored", u"<table><tr><td style='background: white'><font color=navy id=t>a"_s,
              u"#000080"_s},
        Shown{"LightCellBringsAStoredColourBack",
              u"<!DOCTYPE html><div style='color:navy'><table><tr><td bgcolor=white><b id=t>a"_s, u"#000080"_s},
        Shown{"SameColourOnTwoGrounds",
              u"<table><tr><td bgcolor=white><font color=navy id=u>a<td><font color=navy id=t>a"_s, u"lighter"_s,
              u"#000000"_s, u"#000080"_s},
        Shown{
            "DarkTableInALightCell",
            u"<table><tr><td bgcolor=white><font color=navy>a</font><table bgcolor='#102010'><tr><td><font color=navy id=t>a"_s,
            u"lighter"_s, u"#000000"_s, u"#000080"_s, u"#102010"_s},
        Shown{"LightCellInADarkTableInALightCell",
              u"<table><tr><td bgcolor=white><font color=navy>a</font><table bgcolor='#102010'><tr><td><font "
              u"color=navy>a</font>"
              "<td bgcolor=white><font color=navy id=t>a"_s,
              u"#000080"_s},
        Shown{"HalfTransparentGround", u"<p style='background:rgba(255,255,255,.9)'><b id=t>a"_s, u"#000000"_s},
        Shown{"TransparentGround", u"<p style='background:transparent'><b id=t>a"_s, grey},
        Shown{"PictureOfUnknownLook", u"<p style='background-image:linear-gradient(white,white)'><b id=t>a"_s, grey},
        Shown{"PageWithAWhiteBody", u"<style>body { background: white }</style><p id=t>a"_s, u"#000000"_s},
        Shown{"GroundOfTheBodyByAttributeYields", u"<body bgcolor=white><p id=t>a"_s, grey},
        Shown{"Mark", u"<p><mark id=t>a"_s, u"#000000"_s}, Shown{"Field", u"<input id=t value=a>"_s, u"#000000"_s},
        Shown{"QuotesInAttributes", u"<p id=t style=\"font-family:'A \\22 ';\ncolor:navy\">a"_s, u"lighter"_s,
              u"#000000"_s, u"#000080"_s},
        Shown{"SheetsThatDontCome",
              u"<style>@import 'page.css'; @import 'data:text/css,@import%20\"data:text/css,p{color:navy}\";';</style>"
              "<link rel=stylesheet href='http://example.org/a.css'><p id=t>a"_s,
              u"lighter"_s, u"#000000"_s, u"#000080"_s},
        Shown{"BrokenRules",
              u"<style>p { color: ; } }}} p { colour: red; color: nonsense } b[ { } p:has( { color:red }"
              "</style><p id=t style='color:#12'>a"_s,
              grey},
        Shown{"TooManyColours", tooColourful, grey},
        Shown{"NestedDeep", u"<font color=navy><b style='color:red'>"_s.repeated(200) + u"<p id=t>a"_s, u"#FF0000"_s}),
    [](const auto &row) { return std::string(row.param.rule); });

TEST_F(NightPage, DrawsEachTextReadableOnWhatIsBehindIt)
{
    const QString blocks = u"████████"_s;
    LoadOn(u"#000000"_s,
           u"<style>* { font: 20px 'Noto Sans Mono' }</style><p><i id=one>%1</i><p style='color:navy'><i id=two>%1</i>"
           "<table><tr><td bgcolor=white><i id=three>%1</i><td bgcolor=white><i id=four style='color:navy'>%1</table>"_s
               .arg(blocks));
    Control().SearchAndHighlight(blocks, {}, ScrollMode::None, {}, u"Yellow"_s);
    const auto drawn = [this](const QString &id) {
        return Control().grab().toImage().pixelColor(PlaceOf(u"#"_s + id)).name();
    };
    EXPECT_TRUE(WaitFor([&] { return drawn(u"two"_s) == u"#000080"_s; }));
    EXPECT_EQ(drawn(u"one"_s), u"#000000"_s);
    EXPECT_EQ(drawn(u"four"_s), u"#000080"_s);
    Value(u"document.querySelectorAll('font').forEach((e) => e.replaceWith(e.textContent))"_s);
    EXPECT_TRUE(WaitFor([&] { return drawn(u"one"_s) == u"#e4e4e4"_s; }));
    EXPECT_EQ(drawn(u"two"_s), ColourOf(u"#two"_s).name());
    EXPECT_EQ(drawn(u"three"_s), u"#000000"_s);
    EXPECT_EQ(drawn(u"four"_s), u"#000080"_s);
}

TEST_F(NightPage, ColoursHitsInFramesAndWithGivenColours)
{
    LoadOn(u"#000000"_s, u"<iframe srcdoc='<p>ana <font color=white>ana</font>'></iframe>"_s);
    const QString colours = uR"((d => [...d.querySelectorAll('font[style]')]
        .map((e) => d.defaultView.getComputedStyle(e).color).join('|'))(document.querySelector('iframe').contentDocument))"_s;
    Control().SearchAndHighlight(u"ana"_s, {}, ScrollMode::None, {}, u"#FFFF00"_s);
    EXPECT_EQ(Text(colours), u"rgb(0, 0, 0)|rgb(0, 0, 0)"_s);
    Control().SearchAndHighlight(u"ana"_s, {}, ScrollMode::None, {}, u"#000080"_s);
    EXPECT_EQ(Text(colours), u"rgb(228, 228, 228)|rgb(255, 255, 255)"_s);
    Control().SearchAndHighlight(u"ana"_s, {}, ScrollMode::None, u"#FF0000"_s, u"#FFFFFF"_s);
    EXPECT_EQ(Text(colours), u"rgb(255, 0, 0)|rgb(255, 0, 0)"_s);
}

TEST_F(NightPage, HitsInATooColourfulPageAreReadable)
{
    LoadOn(u"#000000"_s, tooColourful);
    EXPECT_EQ(Control().SearchAndHighlight(u"end"_s, {}, ScrollMode::None, {}, u"Yellow"_s), 1);
    EXPECT_EQ(ColourOf(u"#t font"_s).name(), u"#000000"_s);
    EXPECT_EQ(Text(u"getComputedStyle(document.querySelector('#t font')).backgroundColor"_s), u"rgb(255, 255, 0)"_s);
    EXPECT_EQ(ColourOf(u"span"_s).name(), u"#e4e4e4"_s);
}

TEST_F(NightPage, CopiesDragsMarksAndPrintsStoredColours)
{
    const QString page = u"<p>plain <b style='color:navy'>navy</b> <a href='mailto:a@b.c'>link</a>"
                         "<table><tr><td>cell<td bgcolor=white>light</table>"_s;
    struct Left
    {
        QString copied, dragged, marked, text;
        QImage printed;
    };
    const auto left = [&](bool isDark) {
        LoadOn(isDark ? u"#000000"_s : u"transparent"_s, page, isDark);
        Left all;
        QGuiApplication::clipboard()->clear();
        Control().activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(Control().window()));
        Control().SelectAll();
        EXPECT_TRUE(Becomes(u"getSelection().toString().includes('light')"_s));
        Control().Copy();
        EXPECT_TRUE(WaitFor([] { return QGuiApplication::clipboard()->mimeData()->hasHtml(); }));
        all.copied = QGuiApplication::clipboard()->mimeData()->html();
        all.text = QGuiApplication::clipboard()->text();
        all.marked = Control().GetSelectedHtml();
        all.dragged = Text(uR"((() => {
            const event = new DragEvent('dragstart', { bubbles: true, dataTransfer: new DataTransfer() });
            document.querySelector('b').firstChild.dispatchEvent(event);
            return event.dataTransfer.getData('text/html');
        })())"_s);
        QByteArray pdf;
        Control().page()->printToPdf([&](const QByteArray &bytes) { pdf = bytes; });
        EXPECT_TRUE(WaitFor([&] { return !pdf.isEmpty(); }, 20000));
        QBuffer device(&pdf);
        device.open(QIODevice::ReadOnly);
        QPdfDocument document;
        document.load(&device);
        all.printed = document.render(0, QSize(300, 424));
        return all;
    };
    const Left plain = left(false);
    const Left dark = left(true);
    EXPECT_TRUE(plain.copied.contains(u"navy"_s)) << qPrintable(plain.copied);
    EXPECT_EQ(dark.copied.toStdString(), plain.copied.toStdString());
    EXPECT_EQ(dark.text, plain.text);
    EXPECT_EQ(dark.marked, plain.marked);
    EXPECT_TRUE(dark.dragged.contains(u"<b style=\"color:navy\">navy</b>"_s)) << qPrintable(dark.dragged);
    EXPECT_EQ(dark.printed, plain.printed);
    EXPECT_TRUE(Becomes(u"getComputedStyle(document.querySelector('p')).color === 'rgb(228, 228, 228)'"_s))
        << "dark no more after a copy";
}

TEST_F(NightPage, LeavesLightPagesAlone)
{
    LoadOn(u"#FFFFFF"_s, u"<p id=t style='color:yellow'>a"_s, false);
    EXPECT_EQ(ColourOf(u"#t"_s).name(), u"#ffff00"_s);
    EXPECT_EQ(Value(u"document.adoptedStyleSheets.length"_s).toInt(), 1);
}
