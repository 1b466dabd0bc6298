#include "presentation/Contrast.h"
#include "support/WaitFor.h"
#include "toolkit/BrowserTest.h"

#include <QBuffer>
#include <QClipboard>
#include <QColor>
#include <QGuiApplication>
#include <QMimeData>
#include <QPdfDocument>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

double Contrast(const QColor &one, const QColor &other)
{
    return ContrastRatio(one.rgb(), other.rgb());
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
    QString expected; ///< a colour; after ">" lighter ones of its hue, with a contrast of 4.5
    QString ground = u"#000000"_s;
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

TEST_F(NightPage, ShowsTextThatCanBeReadAndLeavesNoTrace)
{
    const Shown rows[]{
        {"no colour is light", u"<p id=t>a"_s, grey},
        {"white where grey is not clear", u"<p id=t>a"_s, u"#FFFFFF"_s, u"#606060"_s},
        {"table without type", u"<table><tr><td id=t>a"_s, grey},
        {"table with type", u"<!DOCTYPE html><table><tr><td id=t>a"_s, grey},
        {"table without type takes no colour around", u"<font color=red><table><tr><td id=t>a"_s, grey},
        {"readable stays", u"<p id=t style='color:#ff8800'>a"_s, u"#FF8800"_s},
        {"three to one stays", u"<p id=t style='color:#5f5f5f'>a"_s, u"#5F5F5F"_s},
        {"inline", u"<p id=t style='margin:0;COLOR : navy'>a"_s, u">#000080"_s},
        {"important", u"<p style='color:#000 !important'><i><b id=t style='color:maroon !important'>a"_s, u"#800000"_s},
        {"font colour", u"<p><font id=t color='#800000'>a"_s, u">#800000"_s, u"#101020"_s},
        {"inherited by elements", u"<p><font color='#800000'><b><i id=t>a"_s, u">#800000"_s, u"#101020"_s},
        {"body text", u"<body text='#000080'><p id=t>a"_s, u">#000080"_s, u"#202020"_s},
        {"body text reaches tables", u"<body text='#ffcc00'><table><tr><td id=t>a"_s, u"#FFCC00"_s},
        {"link", u"<a id=t href='#x'>a"_s, u">#0000EE"_s},
        {"link colour of body", u"<body link='#006000'><a id=t href='#x'>a"_s, u">#006000"_s},
        {"anchor is no link", u"<p><a href='#x'>a</a><a id=t name=x>a"_s, grey},
        {"rule of the page", u"<style>p.n { color: hsl(240, 100%, 25%) }</style><p class=n id=t>a"_s, u">#000080"_s},
        {"rule for the screen",
         u"<style>@media screen { @supports (color: red) { p { color: navy } } }</style><p id=t>a"_s, u">#000080"_s},
        {"rule for paper", u"<style>@media print { p { color: yellow } }</style><p id=t>a"_s, grey},
        {"important rule", u"<style>p { color: rgb(255 0 0 / 100%) !important }</style><p id=t style='color:navy'>a"_s,
         u"#FF0000"_s},
        {"rule in places",
         u"<style>b { color: lime } .x b { color: navy } .y .x b { color: red }</style>"
         "<p><b>a</b><p class=x><b>a</b><div class=y><p class=x><b id=t>a"_s,
         u"#FF0000"_s},
        {"explicit black on dark grey", u"<p id=t style='color:black'>a"_s, u"#000000"_s, u"#707070"_s},
        {"no colour on dark grey", u"<p id=t>a"_s, u"#FFFFFF"_s, u"#707070"_s},
        {"inherit is no colour", u"<p id=t style='color:inherit'>a"_s, grey},
        {"current colour", u"<p style='color:navy'><b id=t style='color:currentcolor'>a"_s, u">#000080"_s},
        {"light cell keeps black", u"<table><tr><td bgcolor='#ffffcc'><p><b id=t>a"_s, u"#000000"_s},
        {"light row keeps black", u"<table><tr bgcolor='#eeeeee'><td id=t>a"_s, u"#000000"_s},
        {"light cell keeps stored", u"<table><tr><td style='background: white'><font color=navy id=t>a"_s,
         u"#000080"_s},
        {"light cell brings a stored colour back",
         u"<!DOCTYPE html><div style='color:navy'><table><tr><td bgcolor=white><b id=t>a"_s, u"#000080"_s},
        {"same colour on two grounds",
         u"<table><tr><td bgcolor=white><font color=navy id=u>a<td><font color=navy id=t>a"_s, u">#000080"_s},
        {"dark table in a light cell",
         u"<table><tr><td bgcolor=white><font color=navy>a</font>"
         "<table bgcolor='#102010'><tr><td><font color=navy id=t>a"_s,
         u">#000080"_s, u"#000000"_s, u"#102010"_s},
        {"light cell in a dark table in a light cell",
         u"<table><tr><td bgcolor=white><font color=navy>a</font><table bgcolor='#102010'><tr><td>"
         "<font color=navy>a</font><td bgcolor=white><font color=navy id=t>a"_s,
         u"#000080"_s},
        {"half transparent ground", u"<p style='background:rgba(255,255,255,.9)'><b id=t>a"_s, u"#000000"_s},
        {"transparent ground", u"<p style='background:transparent'><b id=t>a"_s, grey},
        {"picture of unknown look", u"<p style='background-image:linear-gradient(white,white)'><b id=t>a"_s, grey},
        {"page with a white body", u"<style>body { background: white }</style><p id=t>a"_s, u"#000000"_s},
        {"ground of the body by attribute yields", u"<body bgcolor=white><p id=t>a"_s, grey},
        {"mark", u"<p><mark id=t>a"_s, u"#000000"_s},
        {"field", u"<input id=t value=a>"_s, u"#000000"_s},
        {"quotes in attributes", u"<p id=t style=\"font-family:'A \\22 ';\ncolor:navy\">a"_s, u">#000080"_s},
        {"sheets that don't come",
         u"<style>@import 'page.css'; @import 'data:text/css,@import%20\"data:text/css,p{color:navy}\";';</style>"
         "<link rel=stylesheet href='http://example.org/a.css'><p id=t>a"_s,
         u">#000080"_s},
        {"broken rules",
         u"<style>p { color: ; } }}} p { colour: red; color: nonsense } b[ { } p:has( { color:red }"
         "</style><p id=t style='color:#12'>a"_s,
         grey},
        {"too many colours", tooColourful, grey},
        {"nested deep", u"<font color=navy><b style='color:red'>"_s.repeated(200) + u"<p id=t>a"_s, u"#FF0000"_s},
    };
    for (const Shown &row : rows) {
        SCOPED_TRACE(row.rule);
        LoadOn(row.ground, row.page, false);
        const QString document = Text(u"document.documentElement.outerHTML"_s);
        LoadOn(row.ground, row.page);
        EXPECT_EQ(Text(u"document.documentElement.outerHTML"_s), document);
        const QColor shown = ColourOf(u"#t"_s);
        if (row.expected[0] != u'>') {
            EXPECT_EQ(shown.name(), QColor(row.expected).name());
            continue;
        }
        const double contrast = Contrast(shown, QColor(row.behind.isEmpty() ? row.ground : row.behind));
        EXPECT_GE(contrast, 4.5) << qPrintable(shown.name());
        EXPECT_LT(contrast, 5) << "lighter than need be: " << qPrintable(shown.name());
        EXPECT_NEAR(shown.hslHueF(), QColor(row.expected.sliced(1)).hslHueF(), 0.02) << qPrintable(shown.name());
    }
}

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
