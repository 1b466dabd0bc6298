#include "lumivara-data/CsvTable.h"
#include "lumivara-data/PageWriter.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

Passage ParseOne(const QString &lines)
{
    return ParsePassages(u"@text 1\n"_s + lines, u"p.txt"_s).value(u"text 1"_s);
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
    const QByteArray page =
        PageWriter({{u"a.svg"_s, "<svg/>"}})
            .Page(u"t"_s, ParseOne(u"@repeat 2\n@item {n}\n@end\nx\n@row c ; d\n@row e ; f\n@picture a.svg x"_s),
                  Language::Pali);
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
}

TEST(Csv, ReadsQuotesAndEmptyCells)
{
    const CsvTable table("A,B\r\n1,\"x, \"\"y\"\"\"\r\n2,\n", u"t.csv"_s);
    EXPECT_EQ(table.RowCount(), 2);
    EXPECT_EQ(table.Text(0, u"B"_s), u"x, \"y\""_s);
    EXPECT_TRUE(table.Text(1, u"B"_s).isNull());
    EXPECT_EQ(table.Number(1, u"A"_s), 2);
}

} // namespace
