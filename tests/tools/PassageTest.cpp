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

QByteArray PageOf(const QString &lines)
{
    return PageWriter({{u"a.svg"_s, "<svg/>"}}).Page(u"Tựa"_s, ParseOne(lines), Language::Pali);
}

TEST(PassageMarkup, FaultsAreRefusedWithTheirLine)
{
    const std::pair<QString, const char *> rows[]{
        {u"@text 1\n@colour x"_s, "p.txt:2: there is no mark @colour"},
        {u"@text 1\na\n@text 1"_s, "p.txt:3: \"text 1\" comes twice"},
        {u"a | b"_s, "p.txt:1: text before the first @text or @form"},
        {u"@text 1\n@repeat 2\na\n@text 2"_s, "p.txt:4: @repeat without @end"},
        {u"@text 1\n@repeat 0"_s, "p.txt:2: @repeat wants a number from 1 to 100000 and may not stand in another"}};
    for (const auto &row : rows)
        EXPECT_EQ(FailureOf([&] { ParsePassages(row.first, u"p.txt"_s); }), row.second);
}

TEST(PassageMarkup, InsideALineBecomesHtml)
{
    const std::pair<QString, const char *> rows[]{
        {u"a & b &c &amp;&nbsp;&#7789;&#x1E6D;<b>"_s, "a &amp; b &amp;c &amp;&nbsp;&#7789;&#x1E6D;&lt;b&gt;"},
        {u"x [lời](https://example.org/a)"_s, "x <a href=\"https://example.org/a\">lời</a>"},
        {u"a[^1]"_s, "a<sup><a name=\"pi-ref-1\" href=\"#pi-note-1\">[1]</a></sup>"},
        {u"a // b https://x [a] (b)"_s, "a<br>b https://x [a] (b)"}};
    for (const auto &[source, html] : rows)
        EXPECT_EQ(InlineHtml(source, Language::Pali).toStdString(), html);
}

TEST(PageWriter, MakesOneListOfItemsOneTableOfRowsAndTwoSidesOfLanguages)
{
    const QByteArray page = PageOf(u"@repeat 2\n@item {n}\n@end\nx\n@row c ; d\n@row e ; f\n@picture a.svg x"_s);
    const QByteArray parallel =
        PageWriter({}).ParallelPage(u"Pā"_s, u"Vi"_s, ParseOne(u"ā[^1] | ă[^1]\n@note 1 n | m"_s));
    const auto counts = [](const QByteArray &in, const QByteArrayList &parts) {
        QList<qsizetype> counted;
        for (const QByteArray &part : parts)
            counted.append(in.count(part));
        return counted;
    };
    EXPECT_THAT(counts(page, {"<ul>", "<li", "<table", "<tr>", "<td", "src=\"data:image/svg+xml;base64,PHN2Zy8+\""}),
                testing::ElementsAre(1, 2, 1, 2, 4, 1));
    // The notes of both languages stand in one page: their anchors must not meet.
    EXPECT_THAT(counts(parallel, {"<td", "name=\"pi-note-1\"", "name=\"vi-note-1\""}), testing::ElementsAre(6, 1, 1));
    EXPECT_LT(parallel.indexOf(">ā<"), parallel.indexOf(">ă<"));
    EXPECT_EQ(FailureOf([] { PageOf(u"@picture b.svg x"_s); }), "there is no picture \"b.svg\"");
    EXPECT_EQ(FailureOf([] { PageOf(u"a[^2]\n@note 1 n"_s); }), "\"Tựa\": footnote 2 is missing");
}

TEST(Csv, ReadsQuotesAndEmptyCellsAndNamesTheLineOfAFault)
{
    const QString file = u"t.csv"_s, a = u"A"_s;
    const CsvTable table("A,B\r\n1,\"x, \"\"y\"\"\"\r\n2,\n", file);
    EXPECT_EQ(table.RowCount(), 2);
    EXPECT_EQ(table.Text(0, u"B"_s), u"x, \"y\""_s);
    EXPECT_TRUE(table.Text(1, u"B"_s).isNull());
    EXPECT_EQ(table.Number(1, a), 2);
    EXPECT_EQ(FailureOf([&] { CsvTable("A,B\n1,2\n3\n", file); }), "t.csv:3: 1 cells where 2 columns are");
    EXPECT_EQ(FailureOf([&] { CsvTable("A\n\"x\n", file); }), "t.csv:2: a quote is not closed");
    EXPECT_EQ(FailureOf([&] { CsvTable("A\nx\n", file).Number(0, a); }), "t.csv:2: A is no number");
    EXPECT_EQ(FailureOf([&] { table.Text(0, u"C"_s); }), "t.csv: there is no column C");
}

} // namespace
