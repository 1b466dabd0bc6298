#include "toolkit/browser/BrowserTest.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTimer>
#include <QWebEngineLoadingInfo>
#include <QWebEnginePage>
#include <QWheelEvent>

#include <csignal>
#include <utility>

using namespace Qt::StringLiterals;

class BrowserControl : public BrowserTest
{
protected:
    void Wheel(int angle, Qt::KeyboardModifiers modifiers)
    {
        const QPointF place(50, 50);
        QWheelEvent event(place, Input()->mapToGlobal(place), {}, {0, angle}, {}, modifiers, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(Input(), &event);
    }
    void KillRenderer() { ::kill(static_cast<pid_t>(Control().page()->renderProcessPid()), SIGKILL); }
};

TEST_F(BrowserControl, HostStyleRanksBelowThePageFromTheNextPageOnAndLeavesNoTrace)
{
    const QString page = u"<style>p.own { line-height: 200% }</style><p style='font-size:10px'>a"
                         "<p class=own style='font-size:10px'>b<iframe srcdoc='<p>a'></iframe>"_s;
    const QString styles =
        u"[document.body, ...document.querySelectorAll('p'), frames[0].document.body].map((e) => getComputedStyle(e))"
        ".map((e) => e.backgroundColor + e.lineHeight).join(' ')"_s;
    const QString document = u"document.documentElement.outerHTML"_s;
    Load(page);
    const QString before = Text(styles), trace = Text(document);
    Control().SetHostCSS(u"body {background-color: #102030}\r\np {\r\nline-height: 175%\r\n}\r\n"_s);
    EXPECT_EQ(Text(styles), before);
    Load(page);
    EXPECT_EQ(Text(styles),
              u"rgb(16, 32, 48)normal rgba(0, 0, 0, 0)17.5px rgba(0, 0, 0, 0)20px rgb(16, 32, 48)normal"_s);
    EXPECT_EQ(Text(document), trace);
}

TEST_F(BrowserControl, ZoomIsStoredAsGivenAndClampedInTheEngine)
{
    TBrowserControl other;
    other.show();
    other.LoadFromString("<p>two");
    EXPECT_TRUE(other.WaitComplete());
    for (const auto &[stored, factor] : {std::pair(-100, 0.25), {0, 0.25}, {110, 1.1}, {730, 5.}}) {
        Control().SetZoomPercent(stored);
        EXPECT_EQ(Control().ZoomPercent(), stored);
        Load(u"<p>text"_s);
        EXPECT_DOUBLE_EQ(Control().page()->zoomFactor(), factor);
        EXPECT_NEAR(Value(u"innerWidth"_s).toReal(), Control().width() / factor, 2);
    }
    EXPECT_DOUBLE_EQ(other.page()->zoomFactor(), 1);
}

TEST_F(BrowserControl, CompletesAPageThatIsHandedOverWhileAnotherBegins)
{
    for (int round = 0; round < 20; ++round) {
        bool isNext = false;
        QObject context;
        const auto begun = [&](const QWebEngineLoadingInfo &info) {
            if (info.status() != QWebEngineLoadingInfo::LoadStartedStatus || std::exchange(isNext, true))
                return;
            QTimer::singleShot(0, &context, [this] { Control().LoadFromString("<p>next"); });
        };
        QObject::connect(Control().page(), &QWebEnginePage::loadingChanged, &context, begun);
        Control().LoadFromString("<p>first");
        ASSERT_TRUE(WaitFor([&] { return isNext && Control().Source().contains("next") && Control().IsComplete(); }));
        EXPECT_EQ(Text(u"document.body.innerText"_s), u"next"_s);
    }
}

TEST_F(BrowserControl, SelectsAll)
{
    Load(u"<p>Phẩm <b>một</b></p><p>paṭhamo</p>"_s);
    EXPECT_EQ(Control().SearchAndHighlight(u"phẩm"_s, {}, ScrollMode::None, {}, u"Yellow"_s), 1);
    Control().SelectAll();
    EXPECT_TRUE(WaitFor([&] { return !Control().GetSelectedText().isEmpty(); }));
    EXPECT_EQ(Control().GetSelectedText().simplified(), u"Phẩm một paṭhamo"_s);
    EXPECT_EQ(Control().GetSelectedHtml().remove(QRegularExpression(u"</?font[^>]*>"_s)),
              u"<p>Phẩm <b>một</b></p><p>paṭhamo</p>"_s);
    EXPECT_TRUE(Control().HasSelectedText());
    Control().LoadFromString("<p>next");
    EXPECT_EQ(Control().GetSelectedText(), u""_s) << "a page that is not complete has no selection";
    for (const auto &[before, text] : {std::pair(u""_s, u""_s), {u"a"_s, u"a"_s}}) {
        Load(u"<p>%1<img width=9 src='data:image/gif;base64,R0lGODlhAQABAAAAACwAAAAAAQABAAACAkQBADs='>"_s.arg(before));
        const QSignalSpy changes(Control().page(), &QWebEnginePage::selectionChanged);
        Control().SelectAll();
        EXPECT_TRUE(WaitFor([&] { return !changes.isEmpty() && !Control().selectedText().isEmpty(); }));
        EXPECT_EQ(Control().GetSelectedText(), text) << "pictures are no text";
        EXPECT_EQ(Control().HasSelectedText(), !text.isEmpty());
    }
}

TEST_F(BrowserControl, SelectedHtmlKeepsWhatItsPartsNeed)
{
    // Selected is from the element "f" to the element "t", or to the end of "f" without such.
    const std::pair<const char *, const char *> rows[]{
        {"<p>a <i id=f>b</i></p><p>c</p><p>d <b id=t>e</b> f</p>",
         "<p><i id=\"f\">b</i></p><p>c</p><p>d <b id=\"t\">e</b></p>"},
        {"<p>a <i>b <b id=f>c</b></i> d</p>", "<i><b>c</b></i>"},
        {"<h2 id=f>a <a href='x'>b</a></h2><p>c</p>", "<h2>a <a href=\"x\">b</a></h2>"},
        {"<p>a <a href='x' id=f>b</a></p>", "b"},
        {"<table border=1><tr><td>a<td id=f>b<tr><td id=t>c<td>d</table>",
         "<table border=\"1\"><tbody><tr><td id=\"f\">b</td></tr><tr><td id=\"t\">c</td></tr></tbody></table>"},
        {"<ul><li>a<ol start=3><li id=f>b<li id=t>c</ol><li>d</ul>",
         "<ol start=\"3\"><li id=\"f\">b</li><li id=\"t\">c</li></ol>"},
        {"<p>a<img src='data:,' alt=i><b id=f>b</b><img alt=j><b id=t>c</b>",
         "<b id=\"f\">b</b><img alt=\"j\"><b id=\"t\">c</b>"},
        {"<pre>a\n<b id=f>b\n c</b></pre>", "<pre><b>b\n c</b></pre>"},
    };
    for (const auto &[page, html] : rows) {
        for (const QString &isBackward : {u"false"_s, u"true"_s}) {
            Load(QString::fromUtf8(page));
            Value(uR"((() => {
                const f = document.getElementById('f'), t = document.getElementById('t') || f;
                const texts = (e) => document.createTreeWalker(e, NodeFilter.SHOW_TEXT);
                const walk = texts(t), s = texts(f).nextNode();
                let e;
                while (walk.nextNode()) e = walk.currentNode;
                const ends = [s, 0, e, e.length];
                getSelection().setBaseAndExtent(...(%1 ? [...ends.slice(2), ...ends.slice(0, 2)] : ends));
            })())"_s.arg(isBackward));
            EXPECT_EQ(Control().GetSelectedHtml().toStdString(), html) << page;
        }
    }
}

TEST_F(BrowserControl, CallsForTheMenuInPlaceOfTheEngine)
{
    QList<QPoint> points;
    Control().OnShowContextMenu = [&](const QPoint &point) { points.append(point); };
    Load(u"<p>text"_s);
    EXPECT_TRUE(TakesInput(Control()));
    const QSignalSpy asked(&Control(), &QWidget::customContextMenuRequested);
    QTest::mouseClick(Input(), Qt::RightButton, Qt::NoModifier, {30, 40});
    QTest::keyClick(Input(), Qt::Key_Menu);
    QTest::keyClick(Input(), Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_TRUE(WaitFor([&] { return points.size() == 3; }));
    EXPECT_TRUE(points.contains(Control().mapToGlobal(QPoint(30, 40))));
    QTest::keyClick(Input(), Qt::Key_Menu, Qt::ControlModifier);
    QTest::mouseClick(Input(), Qt::RightButton, Qt::ControlModifier, {70, 20});
    EXPECT_TRUE(WaitFor([&] { return asked.contains(QVariantList{QPoint(70, 20)}); }));
    QTest::mouseClick(Input(), Qt::RightButton, Qt::NoModifier, {50, 60});
    EXPECT_TRUE(WaitFor([&] { return points.contains(Control().mapToGlobal(QPoint(50, 60))); }));
    EXPECT_EQ(points.size(), 4) << "Ctrl with the right button is another gesture, and with the key no gesture";
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(BrowserControl, GivesTheZoomWheelAwayAndScrollsWithThePlainOne)
{
    QList<int> steps;
    Control().OnZoomWheel = [&](int count) { steps.append(count); };
    Load(u"<div style='height:5000px'>"_s);
    for (const int angle : {120, -240, 60, 60})
        Wheel(angle, Qt::ControlModifier);
    EXPECT_TRUE(WaitFor([&] { return steps.size() == 3; }));
    EXPECT_EQ(steps, (QList<int>{1, -2, 1}));
    EXPECT_DOUBLE_EQ(Control().page()->zoomFactor(), 1.0);
    EXPECT_TRUE(TakesInput(Control()));
    Wheel(-120, Qt::NoModifier);
    EXPECT_TRUE(Becomes(u"scrollY > 0"_s));
}

TEST_F(BrowserControl, WaitsInsideWaitsNeverPileUp)
{
    // Each wait gets a new page and another wait before it can end, as from a key held down.
    int depth = 0, greatestDepth = 0, left = 30;
    const std::function<void()> press = [&] {
        if (--left > 0)
            QTimer::singleShot(0, &Control(), press);
        greatestDepth = std::max(greatestDepth, ++depth);
        Control().LoadFromString("<p>page");
        Control().WaitComplete();
        --depth;
    };
    press();
    EXPECT_LT(greatestDepth, 10);
    EXPECT_TRUE(WaitFor([&] { return left == 0 && Control().IsComplete(); }));
}

TEST_F(BrowserControl, GivesNothingBeforeTheFirstPageAndAfterItsEnd)
{
    auto *control = new TBrowserControl;
    EXPECT_FALSE(control->WaitComplete());
    EXPECT_EQ(control->GetSelectedText() + control->GetWordAtCursor(5, 5), u""_s);
    EXPECT_FALSE(control->Evaluate(u"1"_s).isValid());
    control->SelectAll();
    control->Copy();
    control->LoadFromString("<p>text");
    QTimer::singleShot(0, control, [control] { delete control; });
    EXPECT_EQ(control->SearchAndHighlight(u"text"_s, {}, ScrollMode::None, {}, u"Yellow"_s), 0);
}

TEST_F(BrowserControl, ShowsThePageAgainWhenTheRendererEnds)
{
    int completed = 0;
    Load(u"<p>text"_s);
    Control().OnDocumentComplete = [&] { ++completed; };
    KillRenderer();
    EXPECT_TRUE(WaitFor([&] { return completed == 1; }));
    EXPECT_EQ(Text(u"document.body.textContent"_s), u"text"_s);
    EXPECT_TRUE(boxes.isEmpty());
    KillRenderer();
    EXPECT_TRUE(WaitFor([&] { return boxes.size() == 1; }));
    EXPECT_FALSE(Control().WaitComplete()) << "waits for a page that will not come";
    EXPECT_FALSE(Control().Evaluate(u"1"_s).isValid()) << "waits for an answer that will not come";
    Load(u"<p>other"_s);
    EXPECT_EQ(Text(u"document.body.textContent"_s), u"other"_s);
}

TEST_F(BrowserControl, TellsTheWordUnderAPoint)
{
    const std::pair<QString, QString> rows[]{
        // the point is the middle of #w
        {u"<p>tatra <span id=w>bhikkhū</span> paṭisaṅkhā"_s, u"bhikkhū"_s},
        {u"<p>yathā pa<span id=w>ṭisaṅ</span>khā, evaṃ"_s, u"paṭisaṅkhā"_s},
        {u"<p>x ph<span id=w>a\u0302\u0309</span>m y"_s, u"pha\u0302\u0309m"_s},
        {u"<p>x <b>dh<i id=w>am</i></b>ma y"_s, u"dhamma"_s},
        {u"<pre>one<span id=w>     </span>two</pre>"_s, u""_s},
        {u"<p>one</p><div id=w style='height:80px'></div>"_s, u""_s},
        {u"<p>one<img id=w width=60 height=60 src='data:image/gif;base64,R0lGODlhAQABAAAAACwAAAAAAQABAAACAkQBADs='>"_s,
         u""_s}};
    for (const int zoom : {100, 170}) {
        Control().SetZoomPercent(zoom);
        for (const auto &[page, word] : rows) {
            Load(page);
            const QPoint place = PlaceOf(u"#w"_s);
            EXPECT_EQ(Control().GetWordAtCursor(place.x(), place.y()), word) << qPrintable(page) << zoom;
        }
    }
}

TEST_F(BrowserControl, TellsTheWordsBesideTheOneUnderAPoint)
{
    const auto words = [](const QStringList &list) { return list.join(u' ').toStdString(); };
    const std::tuple<QString, std::string, QString, std::string> rows[]{
        {u"<p>vị <span id=w>tỳ</span> khưu ni"_s, "vị", u"tỳ"_s, "khưu ni"},
        {u"<p>một hai ba bốn năm <b id=w>sáu</b> bảy tám chín mười một"_s, "hai ba bốn năm", u"sáu"_s,
         "bảy tám chín mười"},
        {u"<p>rằng: tỳ <span id=w>khưu</span>, vị ấy"_s, "tỳ", u"khưu"_s, ""},
        {u"<p>ngài Đại-<span id=w>ca</span>-diếp - vị"_s, "ngài Đại", u"ca"_s, "diếp"},
        {u"<p>một<p>t<i>ỳ</i>\n &nbsp;<span id=w>khưu</span><br>ni"_s, "tỳ", u"khưu"_s, ""},
        {u"<table><td>một<td><span id=w>hai</span><td>ba</table>"_s, "", u"hai"_s, ""},
        {u"<p>tỳ\u00ad <span id=w>the\u0302\u0301</span> g\u00adiới"_s, "tỳ", u"the\u0302\u0301"_s, "giới"},
        {u"<pre>một<span id=w>     </span>hai</pre>"_s, "", {}, ""}};
    for (const auto &[page, before, word, after] : rows) {
        Load(page);
        const QPoint place = PlaceOf(u"#w"_s);
        const PageWord found = Control().GetWordWithNeighbours(place.x(), place.y(), 4);
        EXPECT_EQ(found.word, word) << qPrintable(page);
        EXPECT_EQ(words(found.before) + '|' + words(found.after), before + '|' + after) << qPrintable(page);
    }
}
