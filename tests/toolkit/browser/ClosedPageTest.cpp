#include "toolkit/browser/BrowserTest.h"

#include "toolkit/browser/NavigationRules.h"

#include <QSet>
#include <QTcpServer>
#include <QTcpSocket>
#include <QWebEngineView>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// A server that records the requests that it gets.
class Listener : public QTcpServer
{
public:
    Listener()
    {
        EXPECT_TRUE(listen(QHostAddress::LocalHost));
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *socket = nextPendingConnection()) {
                ++calls;
                connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
                    const QList<QByteArray> words = socket->readLine().split(' ');
                    if (words.size() > 1)
                        paths.insert(QString::fromUtf8(words[1]));
                    socket->write(answer);
                    socket->disconnectFromHost();
                });
            }
        });
    }

    QString Address() const { return u"http://127.0.0.1:%1"_s.arg(serverPort()); }

    QByteArray answer = "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
    int calls = 0;
    QSet<QString> paths;
};

/// Pages that call out, each by several kinds of reference; %1 is the address of the listener.
const QStringList HostilePages{
    uR"(<html manifest="%1/appcache"><head><link rel="stylesheet" href="%1/stylesheet">
<link rel="preload" as="image" href="%1/preload"><link rel="prefetch" href="%1/prefetch">
<link rel="preconnect" href="%1"><link rel="dns-prefetch" href="%1"><link rel="prerender" href="%1/prerender">
<link rel="modulepreload" href="%1/modulepreload"><link rel="icon" href="%1/icon">
<link rel="manifest" href="%1/manifest"><link rel="apple-touch-icon" href="%1/touchicon">
<link rel="next" href="%1/next">
<style>@import url("%1/import"); @font-face { font-family: Far; src: url("%1/font"); } p { font-family: Far; background: url("%1/background"); cursor: url("%1/cursor"), auto; } li { list-style-image: url("%1/bullet"); } div { border-image: url("%1/border") 1; }</style>
<script src="%1/script"></script><script type="module" src="%1/module"></script></head><body background="%1/body">
<p>text<ul><li>item</ul><div style="content: url(%1/content); height: 9px"></div><img src="%1/img">
<img srcset="%1/srcset 1x"><picture><source srcset="%1/picture"><img></picture><input type="image" src="%1/inputimage">
<table background="%1/table"><tr><td>x</table><iframe src="%1/iframe"></iframe><object data="%1/object"></object>
<embed src="%1/embed"><video src="%1/video" poster="%1/poster" autoplay></video><audio src="%1/audio" preload="auto">
</audio><video autoplay><source src="%1/source"><track default src="%1/track"></video><svg width="9" height="9">
<image href="%1/svgimage" width="9" height="9"/><use href="%1/svguse#x"/></svg><applet code="%1/applet"></applet>
<img src="file:///etc/hostname"><img src="nowhere:thing"></body></html>)"_s,
    u"<meta http-equiv='refresh' content='0;url=%1/refresh'>text"_s,
    u"<frameset cols='50%,50%'><frame src='%1/frame1'><frame src='%1/frame2'></frameset>"_s,
    u"<base href='%1/'><img src='based'><link rel=stylesheet href='basedstyle'>"_s,
    u"<form action='%1/form' method='post'><input name='a'></form><script>document.forms[0].submit()</script>"_s,
    u"<script>location = '%1/location'</script>"_s,
    u"<script>fetch('%1/fetch'); navigator.sendBeacon('%1/beacon'); new WebSocket('%1/ws'.replace('http', 'ws'));"
    "new Worker('%1/worker'); window.open('%1/window'); new Image().src = '%1/newimage';</script>"_s,
    u"<script>const c = new RTCPeerConnection({iceServers: [{urls: 'turn:%1?transport=tcp'.replace('http://', ''),"
    "username: 'a', credential: 'b'}]}); c.createDataChannel('x');"
    "c.createOffer().then(o => c.setLocalDescription(o));</script>"_s,
    u"<img src=x onerror=\"this.src='%1/onerror'\"><svg onload=\"fetch('%1/onload')\"></svg>"_s,
    u"<iframe srcdoc=\"<img src='%1/srcdoc'><link rel=preconnect href='%1'>\"></iframe><iframe src=\"data:text/html,<img src='%1/dataframe'>\"></iframe>"_s,
    u"<meta http-equiv='refresh' content='0;url=file:///etc/hostname'>text"_s,
};

} // namespace

class ClosedPage : public BrowserTest
{
protected:
    ClosedPage()
    {
        Control().OnBeforeNavigate2 = [this](const QUrl &url) {
            asked.append(url.toString());
            return isHeldBack && url.toString().contains(u"http"_s);
        };
    }
    /// Clicks a link of the page that all before it was done for: the question about this one comes behind theirs.
    void ClickLast()
    {
        Click(u"#last"_s);
        EXPECT_TRUE(WaitFor([&] { return asked.removeOne(u"https://last.example/"_s); }));
    }

    const QString last = u"<p><a id=last href='https://last.example/'>last</a>"_s;
    Listener listener;
    QStringList asked;
    bool isHeldBack = false;
};

TEST_F(ClosedPage, CallsNobody)
{
    for (const QString &page : HostilePages) {
        Load(QString(page).replace(u"%1"_s, listener.Address()));
        EXPECT_TRUE(page.contains(u"frameset"_s) || TakesInput(Control())) << qUtf8Printable(page.left(60));
        EXPECT_EQ(Control().url().scheme(), QLatin1StringView(PageScheme)) << qUtf8Printable(page.left(60));
    }
    // A call that the reader makes comes behind those of the pages.
    Listener other;
    Control().SetOpensLinksInside(true);
    Load(u"<a id=a href='%1/link'>go</a>"_s.arg(other.Address()));
    Click(u"#a"_s);
    EXPECT_TRUE(WaitFor([&] { return other.paths.contains(u"/link"_s); }));
    EXPECT_EQ(listener.calls, 0) << qUtf8Printable(QStringList(listener.paths.values()).join(u' '));
    EXPECT_TRUE(opened.isEmpty()) << "a page opened something outside by itself";
}

TEST_F(ClosedPage, RunsNoScriptOfThePage)
{
    // What is in the page itself shows all the same.
    Load(u"<img src='data:image/gif;base64,R0lGODlhAQABAAAAACwAAAAAAQABAAACAkQBADs='>"
         "<title>before</title><body onload=\"document.title='after'\"><script>document.title='after'</script>"
         "<a id=a href=\"javascript:document.title='after'\">x</a>"_s +
         last);
    Click(u"#a"_s);
    ClickLast();
    EXPECT_EQ(Text(u"document.title"_s), u"before"_s);
    EXPECT_EQ(Value(u"document.images[0].naturalWidth"_s).toInt(), 1);
}

TEST_F(ClosedPage, OpensALinkInsideByTheReadersClickAlone)
{
    listener.answer = "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nConnection: close\r\n\r\n"
                      "<title>far</title><body><img src=/far.png><iframe src=/frame></iframe>"
                      "<script src=/script></script><script>document.title = 'run'</script>";
    for (const QString &link : {u"/link"_s, u"/again"_s}) {
        // The next page is closed again.
        listener.paths.clear();
        Control().SetOpensLinksInside(true);
        Load(u"<a id=a href='%1%2'>go</a><img src='%1/picture'><iframe src='%1/near'></iframe>"
             "<meta http-equiv='refresh' content='0;url=%1/refresh'>"_s.arg(listener.Address(), link) +
             last);
        Control().SetOpensLinksInside(false);
        ClickLast();
        Control().SetOpensLinksInside(true);
        Click(u"#a"_s);
        EXPECT_TRUE(WaitFor([&] { return listener.paths.contains(u"/far.png"_s); }));
        EXPECT_TRUE(WaitFor([&] { return Control().title() == u"far"_s; }));
        EXPECT_EQ(listener.paths, (QSet<QString>{link, u"/far.png"_s}));
    }
    EXPECT_TRUE(opened.isEmpty());
}

TEST_F(ClosedPage, StaysWhereItIsWhateverLinkIsPressed)
{
    // Asked of the handler, which cancels web addresses; then sent outside.
    const std::tuple<QString, QString, QString> rows[]{
        {u"HTTPS://example.org/"_s, u"https://example.org/"_s, {}},
        {u"mailto:a@example.org"_s, u"mailto:a@example.org"_s, u"mailto:a@example.org"_s},
        {u"other.htm"_s, {}, {}},
        {u"file:///etc/hostname"_s, {}, {}},
        {u"file:///a/httpd x%C3%A9.htm"_s, u"file:///a/httpd x\u00E9.htm"_s, {}},
        {u"nowhere:thing"_s, {}, {}}};
    isHeldBack = true;
    for (const auto &[href, question, outside] : rows) {
        for (const QString &target : {u""_s, u"_blank"_s}) {
            SCOPED_TRACE((href + target).toStdString());
            asked.clear();
            opened.clear();
            Load(u"<title>here</title><a id=a target='%2' href='%1'>link</a>"_s.arg(href, target) + last);
            Click(u"#a"_s);
            ClickLast();
            // What goes to another program may come behind the other link.
            static_cast<void>(WaitFor([&] { return asked.size() == !question.isEmpty(); }));
            EXPECT_EQ(asked.join(u' ').toStdString(), question.toStdString());
            EXPECT_EQ(opened.join(u' ').toStdString(), outside.toStdString());
            EXPECT_EQ(Text(u"document.title"_s), u"here"_s);
        }
    }
}

TEST_F(ClosedPage, SendsNoFormAnywhere)
{
    for (const QString &action : {listener.Address() + u"/form"_s, u"mailto:a@example.org"_s, u"about:blank"_s}) {
        for (const QString &how : {u""_s, u"target=_blank"_s, u"target=_top"_s, u"method=post target=other"_s}) {
            for (const auto key : {Qt::NoModifier, Qt::ControlModifier}) {
                SCOPED_TRACE((action + u' ' + how).toStdString());
                Load(u"<title>here</title><base target=_blank><form action='%1' %2><input name=secret value=word>"
                     "<input id=a type=submit></form>"_s.arg(action, how) +
                     last);
                EXPECT_TRUE(TakesInput(Control()));
                QTest::mouseClick(Input(), Qt::LeftButton, key, PlaceOf(u"#a"_s));
                ClickLast();
                EXPECT_EQ(Text(u"document.title"_s), u"here"_s);
            }
        }
    }
    EXPECT_EQ(asked + opened, QStringList());
    EXPECT_EQ(listener.calls, 0);
}

TEST_F(ClosedPage, GivesNoWindowToALinkAndFollowsItInPlace)
{
    isHeldBack = true;
    for (const auto &[link, key, button, question] : {
             std::tuple(u"<a id=a href='http://a.b/'>"_s, Qt::ControlModifier, Qt::LeftButton, u"http://a.b/"_s),
             {u"<a id=a href='http://a.b/'>"_s, Qt::ShiftModifier, Qt::LeftButton, u"http://a.b/"_s},
             {u"<a id=a href='http://a.b/'>"_s, Qt::NoModifier, Qt::MiddleButton, u"http://a.b/"_s},
             {u"<a id=a target=other href='http://a.b/'>"_s, Qt::NoModifier, Qt::LeftButton, u"http://a.b/"_s},
             {u"<base target=_blank><a id=a href='http://a.b/'>"_s, Qt::NoModifier, Qt::LeftButton, u"http://a.b/"_s},
             {u"<a id=a target=_blank href='about:blank'>"_s, Qt::NoModifier, Qt::LeftButton, u""_s},
             {u"<a id=a href='ab&#10;out:blank'>"_s, Qt::NoModifier, Qt::LeftButton, u""_s},
             {u"<a id=a href='http://['>"_s, Qt::NoModifier, Qt::LeftButton, u""_s},
             {u"<a id=a href='chrome://version'>"_s, Qt::NoModifier, Qt::LeftButton, u""_s},
             {u"<svg><a id=a href='about:blank'><text y=20>"_s, Qt::NoModifier, Qt::LeftButton, u""_s},
         }) {
        SCOPED_TRACE(link.toStdString());
        asked.clear();
        Load(u"<title>here</title>"_s + link + u"link</text></a></svg><p>"_s + last);
        EXPECT_TRUE(TakesInput(Control()));
        QTest::mouseClick(Input(), button, key, PlaceOf(u"#a"_s));
        ClickLast();
        EXPECT_EQ(asked.join(u' '), question);
        EXPECT_EQ(Text(u"document.title"_s), u"here"_s);
    }
    EXPECT_TRUE(opened.isEmpty());
}

TEST_F(ClosedPage, RefreshesNothingAndIsNeverEmptyForGood)
{
    QList<QUrl> addresses;
    const auto watch = QObject::connect(Control().page(), &QWebEnginePage::urlChanged,
                                        [&](const QUrl &url) { addresses.append(url); });
    for (const QString &to : {u"0; url=about:blank"_s, u"0;url=data:text/html,x"_s, u"0"_s, u"0;url=#x"_s,
                              u"0;url=https://example.org/"_s}) {
        SCOPED_TRACE(to.toStdString());
        addresses.clear();
        Load(u"<noscript><META HTTP-EQUIV=Refresh CONTENT='%1'></noscript><title>here</title>"_s.arg(to) + last);
        ClickLast();
        EXPECT_EQ(addresses.size(), 1) << "its own alone";
        EXPECT_EQ(Text(u"document.title"_s), u"here"_s);
    }
    EXPECT_EQ(asked + opened, QStringList());
    EXPECT_FALSE(Control().IsPageGone());
    EmptyForGood(Control());
    Load(u"<title>anew</title>"_s);
    EXPECT_FALSE(Control().IsPageGone());
    EXPECT_EQ(Text(u"document.title"_s), u"anew"_s);
    QObject::disconnect(watch);
}

TEST_F(ClosedPage, LeavesNoWayBackToAnEarlierPage)
{
    Load(u"<title>one</title>"_s);
    Load(u"<title>two</title>"_s + last);
    Value(u"document.title = 'kept'"_s);
    Control().back();
    Control().reload();
    QTest::mouseClick(Input(), Qt::BackButton);
    for (const QKeySequence keys : {u"F5"_s, u"Ctrl+R"_s, u"Alt+Left"_s, u"Backspace"_s})
        QTest::keyClick(Input(), keys[0].key(), keys[0].keyboardModifiers());
    ClickLast();
    EXPECT_TRUE(WaitFor([&] { return !Control().page()->isLoading(); }));
    EXPECT_EQ(Text(u"document.title"_s), u"kept"_s);
}

TEST_F(ClosedPage, ReachesTheEngineAsUtf8)
{
    const std::pair<QByteArray, QString> rows[]{{"", u""_s},
                                                {"<meta charset=windows-1252><p>\xE1\xB9\xAD", u"ṭ"_s},
                                                {"<p>a\xFF\xFE\x62", u"a\uFFFD\uFFFDb"_s},
                                                {QByteArray("<p>a\0b", 6), u"ab"_s},
                                                {"<html><head><font>in</font></head></html>", u"in"_s},
                                                {QByteArray(1000, '\0'), u""_s}};
    for (const auto &[page, text] : rows) {
        LoadBytes(page);
        EXPECT_EQ(Control().Source(), page);
        EXPECT_EQ(Text(u"document.documentElement.textContent.trim()"_s), text) << page.constData();
    }
}

TEST_F(ClosedPage, TheSamePagesInABareViewCall)
{
    // Of each page what this engine asks for; one asks for no path, and the last calls nobody.
    const QString called[]{
        u"stylesheet preload prefetch import font background cursor bullet border script module body "
        "content img srcset picture inputimage table iframe video poster audio source svgimage"_s,
        u"refresh"_s,
        u"frame1 frame2"_s,
        u"based basedstyle"_s,
        u"form"_s,
        u"location"_s,
        u"fetch beacon ws worker newimage"_s,
        u""_s,
        u"onerror"_s,
        u"srcdoc dataframe"_s};
    QWebEngineView bare;
    bare.show();
    for (int page = 0; page < std::ssize(called); ++page) {
        const int before = listener.calls;
        bare.setHtml(QString(HostilePages[page]).replace(u"%1"_s, listener.Address()), QUrl(listener.Address()));
        EXPECT_TRUE(WaitFor([&] {
            return listener.calls > before && std::ranges::all_of(called[page].split(u' '), [&](const QString &path) {
                       return path.isEmpty() || listener.paths.contains(u'/' + path);
                   });
        })) << qUtf8Printable(called[page]);
    }
}

TEST_F(ClosedPage, APageThatComesWhileAnotherEmptiesTheViewIsShownAndComplete)
{
    for (int time = 0; time < 24; ++time) {
        SCOPED_TRACE(time);
        Load(u"<a id=a href='ab&#10;out:blank'>link</a>"_s);
        EXPECT_TRUE(TakesInput(Control()));
        if (time % 2 == 0)
            Control().page()->runJavaScript(u"location.replace('about:blank')"_s, QWebEngineScript::ApplicationWorld);
        else
            QTest::mouseClick(Input(), Qt::LeftButton, {}, PlaceOf(u"#a"_s));
        for (int turn = 0; turn < time / 2; ++turn)
            QCoreApplication::processEvents();
        Control().LoadFromString("<title>next</title>");
        EXPECT_TRUE(WaitFor([&] {
            return Control().IsComplete() && !Control().IsPageGone() && Text(u"document.title"_s) == u"next"_s;
        }));
    }
}
