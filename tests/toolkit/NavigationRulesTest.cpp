#include "toolkit/NavigationRules.h"

#include <gmock/gmock.h>

#include <string>

namespace {

struct NavigationCase
{
    const char *rule;
    const char *address;
    Navigation decision;
    bool isMainFrame = true;
    bool isStartPage = false;
};

class NavigationTable : public testing::TestWithParam<NavigationCase>
{};

TEST_P(NavigationTable, Decides)
{
    const QUrl page(QStringLiteral("lumivara://page/7"));
    EXPECT_EQ(DecideNavigation(QUrl(QString::fromUtf8(GetParam().address)), GetParam().isStartPage,
                               GetParam().isMainFrame, page),
              GetParam().decision);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, NavigationTable,
    testing::Values(NavigationCase{"HttpLeaves", "http://example.org/", Navigation::OpenOutside},
                    NavigationCase{"HttpsLeaves", "https://example.org/", Navigation::OpenOutside},
                    NavigationCase{"LettersAnywhereLeave", "file:///home/a/httpd.html", Navigation::OpenOutside},
                    NavigationCase{"LettersInAPlaceLeave", "lumivara://page/7#http", Navigation::OpenOutside},
                    NavigationCase{"LettersInCapitalsAreOthers", "file:///HTTPD.html", Navigation::Refuse},
                    NavigationCase{"MailLeaves", "mailto:reader@example.org", Navigation::OpenOutside},
                    NavigationCase{"PlaceInThePageLoads", "lumivara://page/7#note1", Navigation::Load},
                    NavigationCase{"TopOfThePageLoads", "lumivara://page/7#", Navigation::Load},
                    NavigationCase{"ReloadIsRefused", "lumivara://page/7", Navigation::Refuse},
                    NavigationCase{"RelativeLinkIsRefused", "lumivara://page/other.htm", Navigation::Refuse},
                    NavigationCase{"PlaceInAnotherPageIsRefused", "lumivara://page/6#note1", Navigation::Refuse},
                    NavigationCase{"FileIsRefused", "file:///etc/passwd", Navigation::Refuse},
                    NavigationCase{"FtpIsRefused", "ftp://example.org/", Navigation::Refuse},
                    NavigationCase{"ScriptIsRefused", "javascript:alert(1)", Navigation::Refuse},
                    NavigationCase{"DataIsRefused", "data:text/html,x", Navigation::Refuse},
                    NavigationCase{"BlankIsRefused", "about:blank", Navigation::Refuse},
                    NavigationCase{"UnknownSchemeIsRefused", "zoommtg:join", Navigation::Refuse},
                    NavigationCase{"EmptyIsRefused", "", Navigation::Refuse},
                    NavigationCase{"HostsPageLoads", "lumivara://page/8", Navigation::Load, true, true},
                    NavigationCase{"NothingElseLoadsUnderTheHost", "http://example.org/", Navigation::OpenOutside, true,
                                   true},
                    NavigationCase{"FileIsRefusedUnderTheHost", "file:///etc/passwd", Navigation::Refuse, true, true},
                    NavigationCase{"FrameOpensNothing", "http://example.org/", Navigation::Refuse, false},
                    NavigationCase{"FrameShowsNoPage", "lumivara://page/8", Navigation::Refuse, false, true},
                    NavigationCase{"FrameSendsNoMail", "mailto:a@b.c", Navigation::Refuse, false},
                    NavigationCase{"FrameShowsNoPlace", "lumivara://page/7#note1", Navigation::Refuse, false}),
    [](const auto &row) { return std::string(row.param.rule); });

TEST(Requests, OnlyThePageAndEmbeddedDataPass)
{
    const QUrl page(QStringLiteral("lumivara://page/7"));
    const QUrl web(QStringLiteral("http://example.org/"));
    for (const char *allowed : {"lumivara://page/7", "data:image/png;base64,AAAA"})
        EXPECT_TRUE(MayRequest(QUrl(QString::fromUtf8(allowed)), page, false)) << allowed;
    for (const char *onTheWeb : {"http://example.org/a.png", "https://example.org/"}) {
        EXPECT_FALSE(MayRequest(QUrl(QString::fromUtf8(onTheWeb)), page, false)) << onTheWeb;
        EXPECT_TRUE(MayRequest(QUrl(QString::fromUtf8(onTheWeb)), web, false)) << onTheWeb;
        EXPECT_TRUE(MayRequest(QUrl(QString::fromUtf8(onTheWeb)), page, true)) << onTheWeb;
    }
    for (const char *blocked : {"file:///etc/passwd", "ftp://a/b", "ws://example.org/", "blob:lumivara://page/1",
                                "about:blank", "qrc:/a", "//host/a", ""}) {
        EXPECT_FALSE(MayRequest(QUrl(QString::fromUtf8(blocked)), page, false)) << blocked;
        EXPECT_FALSE(MayRequest(QUrl(QString::fromUtf8(blocked)), web, false)) << blocked;
    }
}

} // namespace
