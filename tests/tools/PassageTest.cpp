#include "lumivara-data/Passage.h"
#include "lumivara-data/CsvTable.h"
#include "lumivara-data/PageWriter.h"
#include "lumivara-data/Verbs.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

std::string FailureOf(const std::function<void()> &action)
{
    try {
        action();
    } catch (const ToolError &error) {
        return error.what();
    }
    return {};
}

Passage ParseOne(const QString &lines)
{
    return ParsePassages(u"@text 1\n"_s + lines, u"p.txt"_s).value(u"text 1"_s);
}

TEST(PassageMarkup, KeepsLanguagesApartAndSectionsByKey)
{
    const auto sections = ParsePassages(u"# note\n@text 1101\nā | ă | a\n\n@form rule\n@item x | y\n"_s, u"p.txt"_s);
    ASSERT_EQ(sections.size(), 2);
    const Passage passage = sections[u"text 1101"_s];
    ASSERT_EQ(passage.size(), 1);
    EXPECT_EQ(passage[0].In(Language::Pali), u"ā"_s);
    EXPECT_EQ(passage[0].In(Language::Vietnamese), u"ă"_s);
    EXPECT_EQ(passage[0].In(Language::English), u"a"_s);
    EXPECT_EQ(sections[u"form rule"_s][0].kind, Segment::Kind::Item);
    EXPECT_TRUE(sections[u"form rule"_s][0].In(Language::English).isEmpty());
}

TEST(PassageMarkup, RepetitionsCountAndKeepTheirOrder)
{
    const Passage passage = ParseOne(u"a\n@repeat 2\n{n}x\n{n}y\n@end\nb"_s);
    QStringList texts;
    for (const Segment &segment : passage)
        texts.append(segment.In(Language::Pali));
    EXPECT_EQ(texts, (QStringList{u"a"_s, u"1x"_s, u"1y"_s, u"2x"_s, u"2y"_s, u"b"_s}));
}

TEST(PassageMarkup, FaultsAreRefusedWithTheirLine)
{
    const std::pair<QString, const char *> rows[]{
        {u"@text 1\n@colour x"_s, "p.txt:2: there is no mark @colour"},
        {u"@text 1\na\n@text 1"_s, "p.txt:3: \"text 1\" comes twice"},
        {u"a | b"_s, "p.txt:1: text before the first @text or @form"},
        {u"@text 1\na | b | c | d"_s, "p.txt:2: more than three languages"},
        {u"@text 1\n@repeat 2\na\n@text 2"_s, "p.txt:4: @repeat without @end"},
        {u"@text 1\n@end"_s, "p.txt:2: @end without @repeat"},
        {u"@text 1\n@repeat 0"_s, "p.txt:2: @repeat wants a number from 1 to 100000 and may not stand in another"}};
    for (const auto &row : rows)
        EXPECT_EQ(FailureOf([&] { ParsePassages(row.first, u"p.txt"_s); }), row.second);
}

TEST(PassageMarkup, InsideALineBecomesHtml)
{
    const std::pair<QString, QString> rows[]{
        {u"a & b &c"_s, u"a &amp; b &amp;c"_s},
        {u"&amp;&nbsp;&#7789;&#x1E6D;"_s, u"&amp;&nbsp;&#7789;&#x1E6D;"_s},
        {u"<b>"_s, u"&lt;b&gt;"_s},
        {u"x [lời](https://example.org/a)"_s, u"x <a href=\"https://example.org/a\">lời</a>"_s},
        {u"a[^1]"_s, u"a<sup><a name=\"pi-ref-1\" href=\"#pi-note-1\">[1]</a></sup>"_s},
        {u"a // b https://x"_s, u"a<br>b https://x"_s},
        {u"[a] (b)"_s, u"[a] (b)"_s}};
    for (const auto &[source, html] : rows)
        EXPECT_EQ(InlineHtml(source, Language::Pali).toStdString(), html.toStdString());
}

TEST(PageWriterTest, APageNamesItsCharsetAndTheFontAndSizeThatTheReaderExchanges)
{
    const QByteArray page = PageWriter({}).Page(u"Tựa & đề"_s, ParseOne(u"ā | ă"_s), Language::Vietnamese);
    EXPECT_TRUE(page.startsWith("<HTML>\r\n<head>\r\n<meta http-equiv=\"Content-Type\" content=\"text/html; "
                                "charset=utf-8\" />\r\n<title>Tựa &amp; đề</title>"));
    EXPECT_TRUE(page.contains("\"Segoe UI\""));
    EXPECT_TRUE(page.contains("150%"));
    EXPECT_TRUE(page.contains(">ă<"));
    EXPECT_FALSE(page.contains(">ā<"));
    EXPECT_TRUE(PageWriter({}).Page(u"t"_s, ParseOne(u"ā | ă"_s), Language::English).isEmpty()) << "no text, no page";
}

TEST(PageWriterTest, RunsOfItemsAndRowsMakeOneListAndOneTable)
{
    const QByteArray page =
        PageWriter({}).Page(u"t"_s, ParseOne(u"@item a\n@item b\nx\n@row c ; d\n@row e ; f"_s), Language::Pali);
    EXPECT_EQ(page.count("<ul>"), 1);
    EXPECT_EQ(page.count("<li"), 2);
    EXPECT_EQ(page.count("<table"), 1);
    EXPECT_EQ(page.count("<tr>"), 2);
    EXPECT_EQ(page.count("<td"), 4);
}

TEST(PageWriterTest, ParallelPagesSetBothLanguagesSideBySide)
{
    const QByteArray page = PageWriter({}).ParallelPage(u"Pā"_s, u"Vi"_s, ParseOne(u"ā[^1] | ă[^1]\n@note 1 n | m"_s));
    EXPECT_EQ(page.count("<td"), 6); // titles, paragraph, note
    EXPECT_LT(page.indexOf(">ā<"), page.indexOf(">ă<"));
    // The notes of both languages stand in one page: their anchors must not meet.
    EXPECT_EQ(page.count("name=\"pi-note-1\""), 1);
    EXPECT_EQ(page.count("name=\"vi-note-1\""), 1);
}

TEST(PageWriterTest, PicturesAreStoredInsideThePageAndWhatIsMissingIsNamed)
{
    const PageWriter writer({{u"a.svg"_s, "<svg/>"}});
    EXPECT_TRUE(writer.Page(u"t"_s, ParseOne(u"@picture a.svg x"_s), Language::Pali)
                    .contains("src=\"data:image/svg+xml;base64,PHN2Zy8+\""));
    EXPECT_EQ(FailureOf([&] { writer.Page(u"t"_s, ParseOne(u"@picture b.svg x"_s), Language::Pali); }),
              "there is no picture \"b.svg\"");
    EXPECT_EQ(FailureOf([&] { writer.Page(u"t"_s, ParseOne(u"a[^2]\n@note 1 n"_s), Language::Pali); }),
              "\"t\": footnote 2 is missing");
}

TEST(Csv, ReadsQuotesEmptyCellsAndLineEnds)
{
    const CsvTable table("A,B\r\n1,\"x, \"\"y\"\"\"\r\n2,\n", u"t.csv"_s);
    ASSERT_EQ(table.RowCount(), 2);
    EXPECT_EQ(table.Text(0, u"B"_s), u"x, \"y\""_s);
    EXPECT_TRUE(table.Text(1, u"B"_s).isNull());
    EXPECT_EQ(table.Number(1, u"A"_s), 2);
}

TEST(Csv, FaultsNameFileAndLine)
{
    EXPECT_EQ(FailureOf([] { CsvTable("A,B\n1,2\n3\n", u"t.csv"_s); }), "t.csv:3: 1 cells where 2 columns are");
    EXPECT_EQ(FailureOf([] { CsvTable("A\n\"x\n", u"t.csv"_s); }), "t.csv:2: a quote is not closed");
    EXPECT_EQ(FailureOf([] { CsvTable("A\nx\n", u"t.csv"_s).Number(0, u"A"_s); }), "t.csv:2: A is no number");
    EXPECT_EQ(FailureOf([] { CsvTable("A\nx\n", u"t.csv"_s).Text(0, u"C"_s); }), "t.csv: there is no column C");
}

} // namespace
