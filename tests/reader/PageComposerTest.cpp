#include "reader/PageComposer.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

const QString Segoe = u"Segoe UI"_s;

} // namespace

TEST(ComposePassage, GivesThePage)
{
    const std::tuple<const char *, QByteArray, PageOptions, QByteArray> rows[]{
        {"no margin: the blob byte for byte", "<HTML>a", {1, 0, Segoe}, "<HTML>a"},
        {"margin 1", "a\rb\nc", {1, 1, Segoe}, "<blockquote>\ra\rb\nc\r</blockquote>"},
        {"margin 3 stands before the blob's own start",
         "<HTML>a</HTML>",
         {0, 3, Segoe},
         "<blockquote> <blockquote> <blockquote>\r<HTML>a</HTML>\r</blockquote> </blockquote> </blockquote>"},
        {"no margin around the parallel page", "a", {10, 3, Segoe}, "a"},
        {"margin 4 is none", "a", {1, 4, Segoe}, "a"},
        {"an equal font touches nothing", "SEGOE UI Segoe UI", {1, 0, Segoe}, "SEGOE UI Segoe UI"},
        {"other case is another font", "SEGOE UI|Segoe UI", {1, 0, u"segoe ui"_s}, "segoe ui|segoe ui"},
        {"neighbours", "Segoe UISegoe UI", {1, 0, u"X"_s}, "XX"},
        {"restarts inside a broken name", "SSegoe UI Segoe U", {1, 0, u"X"_s}, "SX Segoe U"},
        {"NUL is no blank", QByteArray("Segoe\0UI", 8), {1, 0, u"X"_s}, QByteArray("Segoe\0UI", 8)},
        {"quotes go in as they are", "'Segoe UI'", {1, 0, u"O'N \"S\""_s}, "'O'N \"S\"'"},
        {"in the parallel page, as UTF-8", "segoe ui", {10, 2, u"Chữ Việt"_s}, "Chữ Việt"},
        {"an empty font removes the name", "a Segoe UI b", {1, 0, QString()}, "a  b"},
        {"nothing left gives no margin either", "Segoe UI", {1, 3, QString()}, ""},
        {"size inside a longer number, in every mode", "1150%150%", {10, 0, Segoe}, "1200%200%"},
        {"other percentages stay", "%50%15%105%", {0, 0, Segoe}, "%50%15%105%"},
        {"after the font swap", "1Segoe UI0%", {0, 0, u"5"_s}, "200%"},
        {"NUL and invalid UTF-8 pass",
         QByteArray("a\0\xFF\xC3(150%\x80\0", 11),
         {1, 0, Segoe},
         QByteArray("a\0\xFF\xC3(200%\x80\0", 11)},
    };
    for (const auto &[rule, content, options, page] : rows)
        EXPECT_EQ(ComposePassage(content, options), page) << rule;
}

TEST(ComposePassage, FindsTheFontWhereverItLiesInALongPage)
{
    // The search goes by blocks of 2048 bytes: at their edges nothing may be missed or found twice.
    for (int before = 2030; before < 2060; ++before) {
        for (const int after : {0, 1, 2047, 2048}) {
            const QByteArray head(before, 's'), tail(after, 'i');
            EXPECT_EQ(ComposePassage(head + "SEGOE ui" + tail, {1, 0, u"Arial"_s}), head + "Arial" + tail)
                << before << " " << after;
        }
    }
}

TEST(FallbackPage, IsTheGivenBytesAroundTheUnescapedText)
{
    EXPECT_EQ(ComposeFallbackPage("a<b>&c"),
              "<HTML>\r<head>\r<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\" />\r"
              "<font face = \"Segoe UI\">\r<h3> <p ALIGN=\"CENTER\"> <br> "
              "<font face=\"Times New Roman\" color=\"#800000\">a<b>&c"
              "</font> </p> </h3></font>\r</head>\r</HTML>");
}

TEST(FallbackText, NamesTheRow)
{
    const std::tuple<int, int, QByteArray> rows[]{{1000, 0, "Phẩm"},
                                                  {9971, 1, "Book"},
                                                  {1000, 2, ""},
                                                  {999, 0, "Chưa có dữ liệu..."},
                                                  {0, 1, "No data to display..."},
                                                  {0, -1, ""}};
    for (const auto &[idVic, interfaceLang, text] : rows)
        EXPECT_EQ(FallbackText(idVic, interfaceLang, u"Phẩm"_s, u"Book"_s), text) << idVic;
}

TEST(HostStyle, HoldsGroundAndLineHeight)
{
    EXPECT_EQ(HostStyle(0x0000FFFF), u"body {background-color: #FFFF00}\r\np {\r\nline-height: 175%\r\n}\r\n"_s);
}

TEST(BarePage, EndsEachLineAndLeavesAnEmptyTextOut)
{
    const QByteArray head = "<HTML>\r\n<BODY>\r\n<head>\r\n<title></title>\r\n"
                            "<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\" />\r\n";
    EXPECT_EQ(UTF8StrToHTML({}), head + "</BODY>\r\n</HTML>\r\n");
    EXPECT_EQ(UTF8StrToHTML("x"), head + "x\r\n</BODY>\r\n</HTML>\r\n");
}
