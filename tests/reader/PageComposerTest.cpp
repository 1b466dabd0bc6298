#include "reader/PageComposer.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

/// A literal that may hold NUL.
template <std::size_t Size>
QByteArray Bytes(const char (&literal)[Size])
{
    return QByteArray(literal, Size - 1);
}

const QString Segoe = u"Segoe UI"_s;

} // namespace

TEST(ComposePassage, GivesThePage)
{
    const struct
    {
        const char *rule;
        QByteArray content;
        PageOptions options;
        QByteArray page;
    } rows[]{
        {"no margin: the blob byte for byte", "<HTML>a", {1, 0, Segoe}, "<HTML>a"},
        {"margin 1", "a", {1, 1, Segoe}, "<blockquote>\ra\r</blockquote>"},
        {"margin 2", "a", {2, 2, Segoe}, "<blockquote> <blockquote>\ra\r</blockquote> </blockquote>"},
        {"margin 3 stands before the blob's own start",
         "<HTML>a</HTML>",
         {0, 3, Segoe},
         "<blockquote> <blockquote> <blockquote>\r<HTML>a</HTML>\r</blockquote> </blockquote> </blockquote>"},
        {"no margin around the parallel page", "a", {10, 3, Segoe}, "a"},
        {"margin 4 is none", "a", {1, 4, Segoe}, "a"},
        {"margin -1 is none", "a", {1, -1, Segoe}, "a"},

        {"an equal font touches nothing", "SEGOE UI Segoe UI", {1, 0, Segoe}, "SEGOE UI Segoe UI"},
        {"other case is another font", "SEGOE UI Segoe UI", {1, 0, u"segoe ui"_s}, "segoe ui segoe ui"},
        {"any case is replaced", "SEGOE UI|segoe ui|SeGoE uI", {1, 0, u"Arial"_s}, "Arial|Arial|Arial"},
        {"neighbours", "Segoe UISegoe UI", {1, 0, u"X"_s}, "XX"},
        {"restarts inside a broken name", "SSegoe UI Segoe U", {1, 0, u"X"_s}, "SX Segoe U"},
        {"NUL is no blank", Bytes("Segoe\0UI"), {1, 0, u"X"_s}, Bytes("Segoe\0UI")},
        {"quotes go in as they are", "<p style='font:Segoe UI'>", {1, 0, u"O'N \"S\""_s}, "<p style='font:O'N \"S\"'>"},
        {"the name is UTF-8", "Segoe UI", {1, 0, u"Chữ Việt"_s}, "Chữ Việt"},
        {"an empty font removes the name", "a Segoe UI b", {1, 0, QString()}, "a  b"},
        {"also in the parallel page", "segoe ui", {10, 2, u"Arial"_s}, "Arial"},
        {"nothing left gives no margin either", "Segoe UI", {1, 3, QString()}, ""},

        {"size in running text", "grew by 150% at once", {1, 0, Segoe}, "grew by 200% at once"},
        {"size in every mode", "150%", {10, 0, Segoe}, "200%"},
        {"inside a longer number", "1150%150%", {0, 0, Segoe}, "1200%200%"},
        {"other percentages stay", "%50%15%105%", {0, 0, Segoe}, "%50%15%105%"},
        {"after the font swap", "1Segoe UI0%", {0, 0, u"5"_s}, "200%"},
        {"in the font's name too", "Segoe UI", {0, 0, u"Wide 150%"_s}, "Wide 200%"},

        {"NUL passes", Bytes("a\0Segoe UI\0"), {1, 0, u"X"_s}, Bytes("a\0X\0")},
        {"invalid UTF-8 passes", "\xFF\xC3(150%\x80", {1, 0, Segoe}, "\xFF\xC3(200%\x80"},
        {"line ends stay", "a\rb\nc\r\n", {1, 1, Segoe}, "<blockquote>\ra\rb\nc\r\n\r</blockquote>"},
        {"empty", "", {1, 3, u"X"_s}, ""},
    };
    for (const auto &row : rows)
        EXPECT_EQ(ComposePassage(row.content, row.options), row.page) << row.rule;
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
    const struct
    {
        int idVic, interfaceLang;
        QByteArray text;
    } rows[]{{1000, 0, "Phẩm"},
             {9971, 1, "Book"},
             {1000, 2, ""},
             {999, 0, "Chưa có dữ liệu..."},
             {0, 1, "No data to display..."},
             {0, -1, ""}};
    for (const auto &row : rows)
        EXPECT_EQ(FallbackText(row.idVic, row.interfaceLang, u"Phẩm"_s, u"Book"_s), row.text) << row.idVic;
    EXPECT_EQ(FallbackText(1005, 1, u"Phẩm"_s, QString()), QByteArray());
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

TEST(ContentColumn, IsOnePerModeAndNoneElse)
{
    const std::pair<int, QString> rows[]{{0, u"CONTENT_VIC_PAL"_s},
                                         {1, u"CONTENT_VIC_VIE"_s},
                                         {2, u"CONTENT_VIC_ENG"_s},
                                         {10, u"CONTENT_VIC_PAL_VIE"_s},
                                         {-1, {}},
                                         {3, {}},
                                         {9, {}},
                                         {11, {}}};
    for (const auto &[mode, column] : rows)
        EXPECT_EQ(ContentColumn(mode), column) << mode;
}
