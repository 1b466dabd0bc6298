#include "toolkit/NavigationRules.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

TEST(Navigation, IsDecidedByAddressFrameAndStarter)
{
    constexpr auto Load = Navigation::Load, Outside = Navigation::OpenOutside, Refuse = Navigation::Refuse;
    const struct
    {
        QString address;
        Navigation inPage, asStartPage, inFrame;
    } rows[]{
        {u"http://example.org/"_s, Outside, Outside, Refuse},
        {u"https://example.org/"_s, Outside, Outside, Refuse},
        {u"file:///home/a/httpd.html"_s, Outside, Outside, Refuse}, // the letters count anywhere
        {u"lumivara://page/7#http"_s, Outside, Load, Refuse},
        {u"file:///HTTPD.html"_s, Refuse, Refuse, Refuse},
        {u"mailto:reader@example.org"_s, Outside, Outside, Refuse},
        {u"lumivara://page/7#note1"_s, Load, Load, Refuse},
        {u"lumivara://page/7#"_s, Load, Load, Refuse},
        {u"lumivara://page/7"_s, Refuse, Load, Refuse},
        {u"lumivara://page/8"_s, Refuse, Load, Refuse},
        {u"lumivara://page/other.htm"_s, Refuse, Load, Refuse},
        {u"lumivara://page/6#note1"_s, Refuse, Load, Refuse},
        {u"file:///etc/passwd"_s, Refuse, Refuse, Refuse},
        {u"ftp://example.org/"_s, Refuse, Refuse, Refuse},
        {u"javascript:alert(1)"_s, Refuse, Refuse, Refuse},
        {u"data:text/html,x"_s, Refuse, Refuse, Refuse},
        {u"about:blank"_s, Refuse, Refuse, Refuse},
        {u"zoommtg:join"_s, Refuse, Refuse, Refuse},
        {QString(), Refuse, Refuse, Refuse},
    };
    const QUrl page(u"lumivara://page/7"_s);
    for (const auto &row : rows) {
        SCOPED_TRACE(row.address.toStdString());
        EXPECT_EQ(DecideNavigation(QUrl(row.address), false, true, page), row.inPage);
        EXPECT_EQ(DecideNavigation(QUrl(row.address), true, true, page), row.asStartPage);
        EXPECT_EQ(DecideNavigation(QUrl(row.address), false, false, page), row.inFrame);
    }
    EXPECT_EQ(DecideNavigation(QUrl(u"lumivara://page/8"_s), true, false, page), Refuse);
}

TEST(Requests, OnlyThePageAndEmbeddedDataPass)
{
    const QUrl page(u"lumivara://page/7"_s), web(u"http://example.org/"_s);
    for (const QString &allowed : {u"lumivara://page/7"_s, u"data:image/png;base64,AAAA"_s})
        EXPECT_TRUE(MayRequest(QUrl(allowed), page, false)) << qPrintable(allowed);
    for (const QString &onTheWeb : {u"http://example.org/a.png"_s, u"https://example.org/"_s}) {
        EXPECT_FALSE(MayRequest(QUrl(onTheWeb), page, false)) << qPrintable(onTheWeb);
        EXPECT_TRUE(MayRequest(QUrl(onTheWeb), web, false)) << qPrintable(onTheWeb);
        EXPECT_TRUE(MayRequest(QUrl(onTheWeb), page, true)) << qPrintable(onTheWeb);
    }
    for (const QString &blocked : {u"file:///etc/passwd"_s, u"ftp://a/b"_s, u"ws://example.org/"_s,
                                   u"blob:lumivara://page/1"_s, u"about:blank"_s, u"qrc:/a"_s, u"//host/a"_s, u""_s}) {
        EXPECT_FALSE(MayRequest(QUrl(blocked), page, false)) << qPrintable(blocked);
        EXPECT_FALSE(MayRequest(QUrl(blocked), web, false)) << qPrintable(blocked);
    }
}
