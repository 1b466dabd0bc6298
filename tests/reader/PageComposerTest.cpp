#include "reader/PageComposer.h"

#include <gmock/gmock.h>

#include <string>

namespace {

struct PassageCase
{
    const char *rule;
    QByteArray content;
    PageOptions options;
    QByteArray page;
};

class PassageTable : public testing::TestWithParam<PassageCase>
{};

TEST_P(PassageTable, GivesThePage)
{
    EXPECT_EQ(ComposePassage(GetParam().content, GetParam().options), GetParam().page);
}

PageOptions With(int mode, int margin, const QString &font = QStringLiteral("Segoe UI"))
{
    return {mode, margin, font};
}

/// A literal that may hold NUL.
template <std::size_t Size>
QByteArray Bytes(const char (&literal)[Size])
{
    return QByteArray(literal, Size - 1);
}

INSTANTIATE_TEST_SUITE_P(
    Margins, PassageTable,
    testing::Values(PassageCase{"NoneIsTheBlobByteForByte", Bytes("<HTML>a"), With(1, 0), Bytes("<HTML>a")},
                    PassageCase{"One", Bytes("a"), With(1, 1), Bytes("<blockquote>\ra\r</blockquote>")},
                    PassageCase{"Two", Bytes("a"), With(2, 2),
                                Bytes("<blockquote> <blockquote>\ra\r</blockquote> </blockquote>")},
                    PassageCase{"ThreeStandsBeforeTheBlobsOwnStart", Bytes("<HTML>a</HTML>"), With(0, 3),
                                Bytes("<blockquote> <blockquote> <blockquote>\r<HTML>a</HTML>\r"
                                      "</blockquote> </blockquote> </blockquote>")},
                    PassageCase{"NeverAroundTheParallelPage", Bytes("a"), With(10, 3), Bytes("a")},
                    PassageCase{"FourIsNone", Bytes("a"), With(1, 4), Bytes("a")},
                    PassageCase{"MinusOneIsNone", Bytes("a"), With(1, -1), Bytes("a")}),
    [](const auto &row) { return std::string(row.param.rule); });

INSTANTIATE_TEST_SUITE_P(
    FontSwap, PassageTable,
    testing::Values(
        PassageCase{"EqualFontTouchesNothing", Bytes("SEGOE UI Segoe UI"), With(1, 0), Bytes("SEGOE UI Segoe UI")},
        PassageCase{"OtherCaseOfTheSameFontIsAnotherFont", Bytes("SEGOE UI Segoe UI"),
                    With(1, 0, QStringLiteral("segoe ui")), Bytes("segoe ui segoe ui")},
        PassageCase{"AnyCaseIsReplaced", Bytes("SEGOE UI|segoe ui|SeGoE uI"), With(1, 0, QStringLiteral("Arial")),
                    Bytes("Arial|Arial|Arial")},
        PassageCase{"NeighboursAreReplacedBoth", Bytes("Segoe UISegoe UI"), With(1, 0, QStringLiteral("X")),
                    Bytes("XX")},
        PassageCase{"RestartsInsideABrokenName", Bytes("SSegoe UI Segoe U"), With(1, 0, QStringLiteral("X")),
                    Bytes("SX Segoe U")},
        PassageCase{"NulIsNoBlank", Bytes("Segoe\0UI"), With(1, 0, QStringLiteral("X")), Bytes("Segoe\0UI")},
        PassageCase{"QuotesOfTheNameGoInAsTheyAre", Bytes("<p style='font:Segoe UI'>"),
                    With(1, 0, QStringLiteral("O'Neil \"Sans\"")), Bytes("<p style='font:O'Neil \"Sans\"'>")},
        PassageCase{"NameIsUtf8", Bytes("Segoe UI"), With(1, 0, QStringLiteral("Chữ Việt")),
                    QStringLiteral("Chữ Việt").toUtf8()},
        PassageCase{"EmptyFontRemovesTheName", Bytes("a Segoe UI b"), With(1, 0, QString()), Bytes("a  b")},
        PassageCase{"AlsoInTheParallelPage", Bytes("segoe ui"), With(10, 2, QStringLiteral("Arial")), Bytes("Arial")},
        PassageCase{"NothingLeftGivesNoMarginEither", Bytes("Segoe UI"), With(1, 3, QString()), Bytes("")}),
    [](const auto &row) { return std::string(row.param.rule); });

INSTANTIATE_TEST_SUITE_P(
    SizeSwap, PassageTable,
    testing::Values(
        PassageCase{"InRunningText", Bytes("grew by 150% at once"), With(1, 0), Bytes("grew by 200% at once")},
        PassageCase{"InEveryMode", Bytes("150%"), With(10, 0), Bytes("200%")},
        PassageCase{"InsideALongerNumber", Bytes("1150%150%"), With(0, 0), Bytes("1200%200%")},
        PassageCase{"OtherPercentagesStay", Bytes("%50%15%105%"), With(0, 0), Bytes("%50%15%105%")},
        PassageCase{"AfterTheFontSwap", Bytes("1Segoe UI0%"), With(0, 0, QStringLiteral("5")), Bytes("200%")},
        PassageCase{"InTheFontsNameToo", Bytes("Segoe UI"), With(0, 0, QStringLiteral("Wide 150%")),
                    Bytes("Wide 200%")}),
    [](const auto &row) { return std::string(row.param.rule); });

INSTANTIATE_TEST_SUITE_P(ForeignBytes, PassageTable,
                         testing::Values(PassageCase{"NulPasses", Bytes("a\0Segoe UI\0"),
                                                     With(1, 0, QStringLiteral("X")), Bytes("a\0X\0")},
                                         PassageCase{"InvalidUtf8Passes", Bytes("\xFF\xC3(150%\x80"), With(1, 0),
                                                     Bytes("\xFF\xC3(200%\x80")},
                                         PassageCase{"LineEndsStay", Bytes("a\rb\nc\r\n"), With(1, 1),
                                                     Bytes("<blockquote>\ra\rb\nc\r\n\r</blockquote>")},
                                         PassageCase{"Empty", Bytes(""), With(1, 3, QStringLiteral("X")), Bytes("")}),
                         [](const auto &row) { return std::string(row.param.rule); });

TEST(ComposePassage, FindsTheFontWhereverItLiesInALongPage)
{
    // The search goes by blocks of 2048 bytes: at their edges nothing may be missed or found twice.
    for (int before = 2030; before < 2060; ++before) {
        for (const int after : {0, 1, 2047, 2048}) {
            const QByteArray head(before, 's');
            const QByteArray tail(after, 'i');
            EXPECT_EQ(ComposePassage(head + Bytes("SEGOE ui") + tail, With(1, 0, QStringLiteral("Arial"))),
                      head + Bytes("Arial") + tail)
                << before << " " << after;
        }
    }
}

TEST(ComposePassage, LeavesTheStoredBytesAlone)
{
    const QByteArray stored = Bytes("150% Segoe UI");
    const QByteArray shared = stored;
    ComposePassage(shared, With(1, 0));
    EXPECT_EQ(stored, Bytes("150% Segoe UI"));
}

TEST(FallbackPage, IsTheGivenBytesAroundTheUnescapedText)
{
    const QByteArray page = Bytes("<HTML>\r<head>\r"
                                  "<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\" />\r"
                                  "<font face = \"Segoe UI\">\r<h3> <p ALIGN=\"CENTER\"> <br> "
                                  "<font face=\"Times New Roman\" color=\"#800000\">a<b>&c"
                                  "</font> </p> </h3></font>\r</head>\r</HTML>");
    EXPECT_EQ(ComposeFallbackPage(Bytes("a<b>&c")), page);
}

struct FallbackCase
{
    const char *rule;
    int idVic;
    int interfaceLang;
    QByteArray text;
};

class FallbackTable : public testing::TestWithParam<FallbackCase>
{};

TEST_P(FallbackTable, NamesTheRow)
{
    EXPECT_EQ(FallbackText(GetParam().idVic, GetParam().interfaceLang, QStringLiteral("Phẩm"), QStringLiteral("Book")),
              GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, FallbackTable,
    testing::Values(FallbackCase{"GroupInVietnamese", 1000, 0, Bytes("Ph\xE1\xBA\xA9m")},
                    FallbackCase{"TextInEnglish", 9971, 1, Bytes("Book")},
                    FallbackCase{"GroupElse", 1000, 2, Bytes("")},
                    FallbackCase{"NoDataInVietnamese", 999, 0,
                                 QByteArray::fromHex("43 68 C6 B0 61 20 63 C3 B3 20 64 E1 BB AF 20 6C 69 E1 BB 87 75 "
                                                     "2E 2E 2E")},
                    FallbackCase{"NoDataInEnglish", 0, 1, Bytes("No data to display...")},
                    FallbackCase{"NoDataElse", 0, -1, Bytes("")}),
    [](const auto &row) { return std::string(row.param.rule); });

TEST(FallbackText, OfAGroupWithoutEnglishNameIsEmpty)
{
    EXPECT_EQ(FallbackText(1005, 1, QStringLiteral("Phẩm"), QString()), QByteArray());
}

TEST(HostStyle, HoldsGroundAndLineHeight)
{
    EXPECT_EQ(HostStyle(0x0000FFFF),
              QStringLiteral("body {background-color: #FFFF00}\r\np {\r\nline-height: 175%\r\n}\r\n"));
}

TEST(BarePage, EndsEachLineAndLeavesAnEmptyTextOut)
{
    const QByteArray head = Bytes("<HTML>\r\n<BODY>\r\n<head>\r\n<title></title>\r\n"
                                  "<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\" />\r\n");
    EXPECT_EQ(UTF8StrToHTML(Bytes("")), head + Bytes("</BODY>\r\n</HTML>\r\n"));
    EXPECT_EQ(UTF8StrToHTML(Bytes("x")), head + Bytes("x\r\n</BODY>\r\n</HTML>\r\n"));
}

TEST(ContentColumn, IsOnePerModeAndNoneElse)
{
    EXPECT_EQ(ContentColumn(0), QStringLiteral("CONTENT_VIC_PAL"));
    EXPECT_EQ(ContentColumn(1), QStringLiteral("CONTENT_VIC_VIE"));
    EXPECT_EQ(ContentColumn(2), QStringLiteral("CONTENT_VIC_ENG"));
    EXPECT_EQ(ContentColumn(10), QStringLiteral("CONTENT_VIC_PAL_VIE"));
    for (const int unknown : {-1, 3, 9, 11})
        EXPECT_TRUE(ContentColumn(unknown).isEmpty()) << unknown;
}

} // namespace
