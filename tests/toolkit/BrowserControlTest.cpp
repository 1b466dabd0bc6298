#include "support/WaitFor.h"
#include "toolkit/BrowserTest.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPointer>
#include <QRegularExpression>
#include <QTimer>
#include <QWheelEvent>

#include <csignal>

using namespace Qt::StringLiterals;

class BrowserControl : public BrowserTest
{
protected:
    void Wheel(int angle, Qt::KeyboardModifiers modifiers)
    {
        const QPointF place(50, 50);
        QWheelEvent event(place, Input()->mapToGlobal(place), {}, {0, angle}, Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(Input(), &event);
    }

    void KillRenderer() { ::kill(static_cast<pid_t>(Control().page()->renderProcessPid()), SIGKILL); }
};

TEST_F(BrowserControl, HostStyleRanksBelowThePageFromTheNextPageOn)
{
    const QString page =
        u"<style>p.own { line-height: 200% }</style><p style='font-size:10px'>a<p class=own style='font-size:10px'>b"_s;
    const QString styles = u"[document.body, ...document.querySelectorAll('p')].map(getComputedStyle)"
                           ".map((e) => e.backgroundColor + e.lineHeight).join(' ')"_s;
    Load(page);
    const QString before = Text(styles);
    Control().SetHostCSS(u"body {background-color: #102030}\r\np {\r\nline-height: 175%\r\n}\r\n"_s);
    EXPECT_EQ(Text(styles), before);
    Load(page);
    EXPECT_EQ(Text(styles), u"rgb(16, 32, 48)normal rgba(0, 0, 0, 0)17.5px rgba(0, 0, 0, 0)20px"_s);
}

TEST_F(BrowserControl, HostStyleLeavesNoTraceAndReachesFrames)
{
    Control().SetHostCSS(u"p { color: #0000ff }"_s);
    Load(u"<body><iframe srcdoc='<p>a'></iframe></body>"_s);
    EXPECT_EQ(Text(u"document.documentElement.outerHTML"_s),
              u"<html><head></head><body><iframe srcdoc=\"<p>a\"></iframe></body></html>"_s);
    EXPECT_EQ(Text(u"(d => d.defaultView.getComputedStyle(d.querySelector('p')).color)"
                   "(document.querySelector('iframe').contentDocument)"_s),
              u"rgb(0, 0, 255)"_s);
}

TEST_F(BrowserControl, ZoomIsStoredAsGivenAndClampedInTheEngine)
{
    for (const auto &[stored, factor] :
         {std::pair(-100, 0.25), {0, 0.25}, {25, 0.25}, {110, 1.1}, {500, 5.}, {730, 5.}}) {
        SCOPED_TRACE(stored);
        Control().SetZoomPercent(stored);
        EXPECT_EQ(Control().ZoomPercent(), stored);
        EXPECT_DOUBLE_EQ(Control().page()->zoomFactor(), factor);
        Load(u"<p>text"_s);
        EXPECT_DOUBLE_EQ(Control().page()->zoomFactor(), factor) << "another page lost the zoom";
        EXPECT_NEAR(Value(u"innerWidth"_s).toReal(), Control().width() / factor, 2);
    }
}

TEST_F(BrowserControl, ZoomsEachControlByItself)
{
    Load(u"<p>one"_s);
    TBrowserControl other;
    other.show();
    other.LoadFromString("<p>two");
    EXPECT_TRUE(other.WaitComplete());
    other.SetZoomPercent(150);
    EXPECT_DOUBLE_EQ(other.page()->zoomFactor(), 1.5);
    EXPECT_DOUBLE_EQ(Control().page()->zoomFactor(), 1.0);
}

TEST_F(BrowserControl, SelectsAllAndCopies)
{
    Load(u"<p>Phẩm <b>một</b></p><p>paṭhamo</p>"_s);
    EXPECT_EQ(Control().GetSelectedText(), u""_s);
    Control().SelectAll();
    EXPECT_TRUE(WaitFor([&] { return !Control().GetSelectedText().isEmpty(); }));
    EXPECT_EQ(Control().GetSelectedText().simplified(), u"Phẩm một paṭhamo"_s);
    EXPECT_EQ(Control().GetSelectedHtml(), u"<p>Phẩm <b>một</b></p><p>paṭhamo</p>"_s);
    QGuiApplication::clipboard()->clear();
    Control().Copy();
    EXPECT_TRUE(WaitFor([] { return !QGuiApplication::clipboard()->text().isEmpty(); }));
    EXPECT_EQ(QGuiApplication::clipboard()->text().simplified(), u"Phẩm một paṭhamo"_s);

    Control().LoadFromString("<p>next");
    EXPECT_EQ(Control().GetSelectedText(), u""_s) << "a page that is not complete has no selection";
    EXPECT_TRUE(Control().WaitComplete());
    EXPECT_EQ(Control().GetSelectedText(), u""_s);
}

TEST_F(BrowserControl, SelectedHtmlKeepsWhatItsPartsNeed)
{
    // "from" and "to" are the ids of the elements whose text begins and ends the selection.
    const struct
    {
        const char *page, *from, *to, *html;
    } rows[]{
        {"<p>a <i id=f>b</i></p><p>c</p><p>d <b id=t>e</b> f</p>", "f", "t",
         "<p><i id=\"f\">b</i></p><p>c</p><p>d <b id=\"t\">e</b></p>"},
        {"<p>a <i>b <b id=f>c</b></i> d</p>", "f", "f", "<i><b>c</b></i>"},
        {"<h2 id=f>a <a href='x'>b</a></h2><p>c</p>", "f", "f", "<h2>a <a href=\"x\">b</a></h2>"},
        {"<p>a <a href='x' id=f>b</a></p>", "f", "f", "b"},
        {"<table border=1><tr><td>a<td id=f>b<tr><td id=t>c<td>d</table>", "f", "t",
         "<table border=\"1\"><tbody><tr><td id=\"f\">b</td></tr><tr><td id=\"t\">c</td></tr></tbody></table>"},
        {"<table><tr><td id=f>a<td id=t>b</table>", "f", "t",
         "<table><tbody><tr><td id=\"f\">a</td><td id=\"t\">b</td></tr></tbody></table>"},
        {"<ul><li>a<ol start=3><li id=f>b<li id=t>c</ol><li>d</ul>", "f", "t",
         "<ol start=\"3\"><li id=\"f\">b</li><li id=\"t\">c</li></ol>"},
        {"<p>a<img src='data:,' alt=i><b id=f>b</b><img alt=j><b id=t>c</b>", "f", "t",
         "<b id=\"f\">b</b><img alt=\"j\"><b id=\"t\">c</b>"},
        {"<pre>a\n<b id=f>b\n c</b></pre>", "f", "f", "<pre><b>b\n c</b></pre>"},
    };
    for (const auto &row : rows) {
        for (const bool isBackward : {false, true}) {
            Load(QString::fromUtf8(row.page));
            Value(u"(() => { const ends = (id) => { const r = document.createRange(), e = document.getElementById(id); "
                  "const w = document.createTreeWalker(e, NodeFilter.SHOW_TEXT); let last; "
                  "const first = w.nextNode(); for (let n = first; n; n = w.nextNode()) last = n; "
                  "return [first, last]; }; const s = ends('%1')[0], e = ends('%2')[1]; const back = %3; "
                  "getSelection().setBaseAndExtent(back ? e : s, back ? e.length : 0, back ? s : e, "
                  "back ? 0 : e.length); })()"_s.arg(QLatin1StringView(row.from), QLatin1StringView(row.to),
                                                     isBackward ? u"true"_s : u"false"_s));
            EXPECT_EQ(Control().GetSelectedHtml().toStdString(), row.html) << row.page;
        }
    }
}

TEST_F(BrowserControl, SelectedHtmlOfAColouredPageHoldsItsWords)
{
    Load(u"<p>kinh một</p><p>hai kinh</p>"_s);
    EXPECT_EQ(Control().SearchAndHighlight(u"kinh"_s, {}, ScrollMode::None, {}, u"Yellow"_s), 2);
    Control().SelectAll();
    EXPECT_TRUE(WaitFor([&] { return !Control().GetSelectedText().isEmpty(); }));
    EXPECT_EQ(Control().GetSelectedHtml().remove(QRegularExpression(u"</?font[^>]*>"_s)),
              u"<p>kinh một</p><p>hai kinh</p>"_s);
}

TEST_F(BrowserControl, TellsPressesWithModifiers)
{
    QStringList presses;
    Control().OnClick = [&](Qt::MouseButton button, Qt::KeyboardModifiers modifiers, int x, int y) {
        presses.append(u"%1 %2 %3,%4"_s.arg(button).arg(modifiers.toInt()).arg(x).arg(y));
    };
    Load(u"<p>text"_s);
    QTest::mousePress(Input(), Qt::LeftButton, Qt::NoModifier, {10, 20});
    EXPECT_TRUE(WaitFor([&] { return presses.size() == 1; })) << "it is the press that counts";
    QTest::mouseRelease(Input(), Qt::LeftButton, Qt::NoModifier, {10, 20});
    QTest::mouseClick(Input(), Qt::RightButton, Qt::ControlModifier, {30, 40});
    QTest::mouseClick(Input(), Qt::MiddleButton, Qt::NoModifier, {30, 40});
    EXPECT_TRUE(WaitFor([&] { return presses.size() == 2; }));
    EXPECT_EQ(presses, (QStringList{u"1 0 10,20"_s, u"2 %1 30,40"_s.arg(int(Qt::ControlModifier))}));
}

TEST_F(BrowserControl, CallsForTheMenuInPlaceOfTheEngine)
{
    QList<QPoint> points;
    Control().OnShowContextMenu = [&](const QPoint &point) { points.append(point); };
    Load(u"<p>text"_s);
    QTest::mouseClick(Input(), Qt::RightButton, Qt::NoModifier, {30, 40});
    EXPECT_TRUE(WaitFor([&] { return points.size() == 1; }));
    EXPECT_EQ(points.value(0), Control().mapToGlobal(QPoint(30, 40)));
    QTest::keyClick(Input(), Qt::Key_Menu);
    QTest::keyClick(Input(), Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_TRUE(WaitFor([&] { return points.size() == 3; }));
    QTest::mouseClick(Input(), Qt::RightButton, Qt::ControlModifier, {30, 40});
    Pause(80);
    EXPECT_EQ(points.size(), 3) << "Ctrl with the right button is another gesture";
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(BrowserControl, GivesTheZoomWheelAwayAndScrollsWithThePlainOne)
{
    QList<int> steps;
    Control().OnZoomWheel = [&](int count) { steps.append(count); };
    Load(u"<div style='height:5000px'>"_s);
    Wheel(120, Qt::ControlModifier);
    Wheel(-240, Qt::ControlModifier);
    Wheel(60, Qt::ControlModifier);
    Wheel(60, Qt::ControlModifier);
    EXPECT_TRUE(WaitFor([&] { return steps.size() == 3; }));
    EXPECT_EQ(steps, (QList<int>{1, -2, 1}));
    EXPECT_DOUBLE_EQ(Control().page()->zoomFactor(), 1.0);
    EXPECT_EQ(Value(u"scrollY"_s).toInt(), 0);
    EXPECT_TRUE(WaitFor([&] {
        Wheel(-120, Qt::NoModifier); // a page that was not painted yet drops what it gets
        return Value(u"scrollY > 0"_s).toBool();
    }));
}

TEST_F(BrowserControl, TellsEachCompletedPageOnceAndOnlyTheLast)
{
    QStringList titles;
    Control().OnDocumentComplete = [&] { titles.append(Text(u"document.title"_s)); };
    for (int page = 0; page < 5; ++page)
        Control().LoadFromString("<title>" + QByteArray::number(page) + "</title>");
    EXPECT_TRUE(Control().WaitComplete());
    Pause(50);
    EXPECT_EQ(titles, QStringList{u"4"_s});
}

TEST_F(BrowserControl, ANewerPageEndsTheWaitForAnOlder)
{
    bool olderResult = true;
    int newerHits = -1;
    Control().LoadFromString("<p>older");
    QTimer::singleShot(0, &Control(), [&] {
        Control().LoadFromString("<p>newer");
        newerHits = Control().SearchAndHighlight(u"newer"_s, {}, ScrollMode::None, {}, u"Yellow"_s);
    });
    olderResult = Control().WaitComplete();
    EXPECT_FALSE(olderResult);
    EXPECT_EQ(newerHits, 1);
}

TEST_F(BrowserControl, WaitsInsideWaitsNeverPileUp)
{
    // Each wait gets a new page and another wait before it can end, as from a key held down.
    int depth = 0;
    int greatestDepth = 0;
    std::function<void(int)> press = [&](int left) {
        if (left == 0)
            return;
        QTimer::singleShot(0, &Control(), [&, left] { press(left - 1); });
        greatestDepth = std::max(greatestDepth, ++depth);
        Control().LoadFromString("<p>page");
        Control().WaitComplete();
        --depth;
    };
    press(30);
    EXPECT_LT(greatestDepth, 10);
    EXPECT_TRUE(WaitFor([&] { return Control().IsComplete(); }));
}

TEST_F(BrowserControl, AWaitSurvivesTheEndOfItsControl)
{
    auto *control = new TBrowserControl;
    control->LoadFromString("<p>text");
    QTimer::singleShot(0, control, [control] { delete control; });
    EXPECT_EQ(control->SearchAndHighlight(u"text"_s, {}, ScrollMode::None, {}, u"Yellow"_s), 0);
}

TEST_F(BrowserControl, GivesNothingBeforeTheFirstPage)
{
    TBrowserControl control;
    EXPECT_FALSE(control.WaitComplete());
    EXPECT_EQ(control.GetSelectedText(), u""_s);
    EXPECT_EQ(control.GetWordAtCursor(5, 5), u""_s);
    EXPECT_FALSE(control.Evaluate(u"1"_s).isValid());
    control.SelectAll();
    control.Copy();
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
    EXPECT_FALSE(Control().IsComplete());
    EXPECT_FALSE(Control().WaitComplete()) << "waits for a page that will not come";
    EXPECT_FALSE(Control().Evaluate(u"1"_s).isValid()) << "waits for an answer that will not come";
    Load(u"<p>other"_s);
    EXPECT_EQ(Text(u"document.body.textContent"_s), u"other"_s);
}

TEST_F(BrowserControl, TellsTheWordUnderAPoint)
{
    const struct
    {
        QString page, word; ///< the point is the middle of #w
    } rows[]{{u"<p>one <span id=w>two</span> three"_s, u"two"_s},
             {u"<p>tatra <span id=w>bhikkhū</span> paṭisaṅkhā"_s, u"bhikkhū"_s},
             {u"<p>yathā pa<span id=w>ṭisaṅ</span>khā, evaṃ"_s, u"paṭisaṅkhā"_s},
             {u"<p>các vị <span id=w>Tỳ</span> khưu"_s, u"Tỳ"_s},
             {u"<p>x ph<span id=w>a\u0302\u0309</span>m y"_s, u"pha\u0302\u0309m"_s},
             {u"<p>x <b>dh<i id=w>am</i></b>ma y"_s, u"dhamma"_s},
             {u"<p><span id=w>one</span></p><p>two</p>"_s, u"one"_s},
             {u"<pre>one<span id=w>     </span>two</pre>"_s, u""_s},
             {u"<p>one</p><div id=w style='height:80px'></div>"_s, u""_s},
             {u"<p>one<img id=w width=60 height=60 src='data:image/gif;base64,"
              "R0lGODlhAQABAAAAACwAAAAAAQABAAACAkQBADs='>two"_s,
              u""_s}};
    for (const int zoom : {100, 170}) {
        Control().SetZoomPercent(zoom);
        for (const auto &row : rows) {
            Load(row.page);
            const QPoint place = PlaceOf(u"#w"_s);
            EXPECT_EQ(Control().GetWordAtCursor(place.x(), place.y()), row.word) << qPrintable(row.page) << zoom;
        }
    }
}
