#include "toolkit/browser/NavigationRules.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

TEST(Navigation, IsDecidedByAddressFrameAndStarter)
{
    constexpr auto Load = Navigation::Load, Outside = Navigation::OpenOutside, Refuse = Navigation::Refuse;
    const std::tuple<QString, Navigation, Navigation> rows[]{
        // address, in the page, as its start page
        {u"https://example.org/"_s, Outside, Outside},
        {u"file:///home/a/httpd.html"_s, Outside, Outside}, // the letters count anywhere
        {u"lumivara://page/7#http"_s, Outside, Load},
        {u"file:///HTTPD.html"_s, Refuse, Refuse},
        {u"mailto:reader@example.org"_s, Outside, Outside},
        {u"lumivara://page/7#note1"_s, Load, Load},
        {u"lumivara://page/7"_s, Refuse, Load},
        {u"lumivara://page/other.htm"_s, Refuse, Load},
        {u"lumivara://page/6#note1"_s, Refuse, Load},
        {u"javascript:alert(1)"_s, Refuse, Refuse},
        {u"data:text/html,x"_s, Refuse, Refuse},
        {QString(), Refuse, Refuse},
    };
    const QUrl page(u"lumivara://page/7"_s);
    for (const auto &[address, inPage, asStartPage] : rows) {
        SCOPED_TRACE(address.toStdString());
        EXPECT_EQ(DecideNavigation(QUrl(address), false, true, page), inPage);
        EXPECT_EQ(DecideNavigation(QUrl(address), true, true, page), asStartPage);
        for (const bool isStart : {false, true})
            EXPECT_EQ(DecideNavigation(QUrl(address), isStart, false, page), Refuse) << "in a frame";
    }
}

TEST(Requests, OnlyThePageAndEmbeddedDataPass)
{
    const QUrl page(u"lumivara://page/7"_s), web(u"http://example.org/"_s), far(u"https://example.org/a.png"_s);
    EXPECT_TRUE(MayRequest(page, page, false));
    EXPECT_TRUE(MayRequest(QUrl(u"data:image/png;base64,AAAA"_s), page, false));
    EXPECT_FALSE(MayRequest(far, page, false));
    EXPECT_TRUE(MayRequest(far, web, false) && MayRequest(far, page, true));
    for (const QString &blocked : {u"file:///etc/passwd"_s, u"ftp://a/b"_s, u"ws://example.org/"_s,
                                   u"blob:lumivara://page/1"_s, u"about:blank"_s, u"qrc:/a"_s, u"//host/a"_s, u""_s}) {
        for (const QUrl &from : {page, web})
            EXPECT_FALSE(MayRequest(QUrl(blocked), from, false)) << qPrintable(blocked);
    }
}
