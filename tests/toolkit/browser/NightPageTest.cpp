#include "base/Contrast.h"
#include "toolkit/browser/BrowserTest.h"

#include <QBuffer>
#include <QClipboard>
#include <QColor>
#include <QGuiApplication>
#include <QMimeData>
#include <QPdfDocument>

using namespace Qt::StringLiterals;

namespace {

const QString grey = u"#e4e4e4"_s;
const QString tooColourful = [] {
    QString page;
    for (int number = 0; number < 20000; ++number)
        page += u"<p><span style='color:#%1'>word</span>"_s.arg(number, 6, 16, QLatin1Char('0'));
    return page + u"<p id=t>end"_s;
}();

} // namespace

class NightPage : public BrowserTest
{
protected:
    ~NightPage() override
    {
        Control().SetDarkGround(false);
        Control().SetFollowsSkin(false);
        Control().setPalette({});
    }

    void LoadOn(const QString &ground, const QString &page, bool isDark = true)
    {
        Control().SetHostCSS(u"body {background-color: %1}\r\np {\r\nline-height: 175%\r\n}\r\n"_s.arg(ground));
        Control().SetDarkGround(isDark);
        Load(page);
    }
    QColor ColourOf(const QString &selector)
    {
        QStringList parts = Text(u"getComputedStyle(document.querySelector('%1')).color"_s.arg(selector)).split(u',');
        if (parts.size() != 3)
            return {};
        return QColor(parts[0].mid(4).toInt(), parts[1].toInt(), parts[2].chopped(1).toInt());
    }
};

TEST_F(NightPage, ShowsTextThatCanBeReadAndLeavesNoTrace)
{
    const struct
    {
        const char *rule;
        QString page;     ///< the text in question is in the element "t"
        QString expected; ///< a colour; after ">" a calm lighter one of its hue
        QString ground = u"#000000"_s;
        QString behind = {}; ///< what the contrast is measured against if not the ground of the page
    } rows[]{
        {"white where grey is not clear", u"<p id=t>a"_s, u"#ffffff"_s, u"#606060"_s},
        {"table without type takes no colour around", u"<font color=red><table><tr><td id=t>a"_s, grey},
        {"what can be read stays", u"<p id=t style='color:#757575'>a"_s, u"#757575"_s},
        {"three to one is not enough", u"<p id=t style='color:#5f5f5f'>a"_s, u">#5f5f5f"_s},
        {"the entries' red", u"<font color='#cc0000' id=t>a"_s, u">#cc0000"_s, u"#24262b"_s},
        {"the entries' blue", u"<font color='#004586' id=t>a"_s, u">#004586"_s, u"#303943"_s},
        {"inline", u"<p id=t style='margin:0;COLOR : navy'>a"_s, u">#000080"_s},
        {"important", u"<p style='color:#000 !important'><i><b id=t style='color:maroon !important'>a"_s, u"#800000"_s},
        {"inherited by elements", u"<p><font color='#800000'><b><i id=t>a"_s, u">#800000"_s, u"#101020"_s},
        {"body text reaches tables", u"<body text='#ffcc00'><table><tr><td id=t>a"_s, u"#ffcc00"_s},
        {"link", u"<a id=t href='#x'>a"_s, u">#0000ee"_s},
        {"anchor is no link", u"<p><a href='#x'>a</a><a id=t name=x>a"_s, grey},
        {"rule for the screen",
         u"<style>@media screen { @supports (color: red) { p.n { color: hsl(240, 100%, 25%) } } }</style>"
         "<p class=n id=t>a"_s,
         u">#000080"_s},
        {"rule for paper", u"<style>@media print { p { color: yellow } }</style><p id=t>a"_s, grey},
        {"important rule", u"<style>p { color: rgb(255 0 0 / 100%) !important }</style><p id=t style='color:navy'>a"_s,
         u"#ff0000"_s},
        {"rule in places",
         u"<style>b { color: lime } .x b { color: navy } .y .x b { color: red }</style>"
         "<p><b>a</b><p class=x><b>a</b><div class=y><p class=x><b id=t>a"_s,
         u"#ff0000"_s},
        {"current colour", u"<p style='color:navy'><b id=t style='color:currentcolor'>a"_s, u">#000080"_s},
        {"light row keeps black", u"<table><tr bgcolor='#eeeeee'><td id=t>a"_s, u"#000000"_s},
        {"light cell brings a stored colour back",
         u"<!DOCTYPE html><div style='color:navy'><table><tr><td bgcolor=white><b id=t>a"_s, u"#000080"_s},
        {"same colour on two grounds",
         u"<table><tr><td bgcolor=white><font color=navy id=u>a<td><font color=navy id=t>a"_s, u">#000080"_s},
        {"dark table in a light cell",
         u"<table><tr><td bgcolor=white><font color=navy>a</font>"
         "<table bgcolor='#102010'><tr><td><font color=navy id=t>a"_s,
         u">#000080"_s, u"#000000"_s, u"#102010"_s},
        {"half transparent ground", u"<p style='background:rgba(255,255,255,.9)'><b id=t>a"_s, u"#000000"_s},
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
        {"nested deep", u"<font color=navy><b style='color:red'>"_s.repeated(200) + u"<p id=t>a"_s, u"#ff0000"_s},
    };
    const QString document = u"document.documentElement.outerHTML"_s;
    for (const auto &row : rows) {
        SCOPED_TRACE(row.rule);
        LoadOn(row.ground, row.page, false);
        const QString before = Text(document);
        LoadOn(row.ground, row.page);
        EXPECT_EQ(Text(document), before);
        const QColor shown = ColourOf(u"#t"_s), ground = row.behind.isEmpty() ? row.ground : row.behind;
        if (row.expected[0] != u'>') {
            EXPECT_EQ(shown.name(), row.expected);
            continue;
        }
        EXPECT_NEAR(ContrastRatio(shown.rgb(), ground.rgb()), 5.75, 0.25) << qPrintable(shown.name());
        EXPECT_NEAR(shown.hslHueF(), QColor(row.expected.sliced(1)).hslHueF(), 0.02) << qPrintable(shown.name());
        EXPECT_LE(shown.hslSaturationF(), 0.42) << "too loud: " << qPrintable(shown.name());
    }
}

TEST_F(NightPage, ColoursHitsInFramesAndWithGivenColours)
{
    LoadOn(u"#000000"_s, u"<iframe srcdoc='<p>ana <font color=white>ana</font>'></iframe>"_s);
    for (const auto &[text, ground, shown] : {std::tuple(u""_s, u"#FFFF00"_s, u"rgb(0, 0, 0)|rgb(0, 0, 0)"_s),
                                              {u""_s, u"#000080"_s, u"rgb(228, 228, 228)|rgb(255, 255, 255)"_s},
                                              {u"#FF0000"_s, u"#FFFFFF"_s, u"rgb(255, 0, 0)|rgb(255, 0, 0)"_s}}) {
        Control().SearchAndHighlight(u"ana"_s, {}, ScrollMode::None, text, ground);
        EXPECT_EQ(Text(u"[...frames[0].document.querySelectorAll('font[style]')]"
                       ".map((e) => getComputedStyle(e).color).join('|')"_s),
                  shown);
    }
    LoadOn(u"#000000"_s, tooColourful);
    EXPECT_EQ(Control().SearchAndHighlight(u"end"_s, {}, ScrollMode::None, {}, u"Yellow"_s), 1);
    EXPECT_EQ(ColourOf(u"#t font"_s).name(), u"#000000"_s);
    EXPECT_EQ(ColourOf(u"span"_s).name(), grey);
}

TEST_F(NightPage, CopiesDragsMarksAndPrintsStoredColours)
{
    enum class Dark { Not, ByHost, BySkin };
    QPalette night;
    night.setColor(QPalette::Base, Qt::black);
    const auto left = [&](Dark how) {
        const bool isDark = how != Dark::Not;
        Control().setPalette(how == Dark::BySkin ? night : QPalette());
        Control().SetFollowsSkin(how == Dark::BySkin);
        LoadOn(how == Dark::ByHost ? u"#000000"_s : u"transparent"_s,
               u"<p>plain <b style='color:navy'>navy</b> <a href='mailto:a@b.c'>link</a>"
               "<table><tr><td>cell<td bgcolor=white>light</table>"_s,
               how == Dark::ByHost);
        EXPECT_EQ(ColourOf(u"p"_s).name(), isDark ? grey : u"#000000"_s);
        const QClipboard &clipboard = *QGuiApplication::clipboard();
        QGuiApplication::clipboard()->clear();
        Control().activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(Control().window()));
        Control().SelectAll();
        EXPECT_TRUE(Becomes(u"getSelection().toString().includes('light')"_s));
        Control().Copy();
        EXPECT_TRUE(WaitFor([&] { return clipboard.mimeData()->hasHtml(); }));
        const QString dragged = Text(uR"((() => {
            const event = new DragEvent('dragstart', { bubbles: true, dataTransfer: new DataTransfer() });
            document.querySelector('b').firstChild.dispatchEvent(event);
            return event.dataTransfer.getData('text/html');
        })())"_s);
        EXPECT_TRUE(!isDark || dragged.contains(u"<b style=\"color:navy\">navy</b>"_s)) << qPrintable(dragged);
        QByteArray pdf;
        Control().page()->printToPdf([&](const QByteArray &bytes) { pdf = bytes; });
        EXPECT_TRUE(WaitFor([&] { return !pdf.isEmpty(); }, 20000));
        QBuffer device(&pdf);
        device.open(QIODevice::ReadOnly);
        QPdfDocument document;
        document.load(&device);
        const QStringList texts{clipboard.mimeData()->html(), clipboard.text(), Control().GetSelectedHtml()};
        return std::pair(texts, document.render(0, QSize(300, 424)));
    };
    const auto plain = left(Dark::Not);
    EXPECT_TRUE(plain.first[0].contains(u"navy"_s));
    for (const Dark how : {Dark::ByHost, Dark::BySkin}) {
        const auto dark = left(how);
        EXPECT_EQ(dark.first, plain.first);
        EXPECT_EQ(dark.second, plain.second);
        EXPECT_TRUE(WaitFor([&] { return ColourOf(u"p"_s).name() == grey; })) << "dark no more after a copy";
    }
}
