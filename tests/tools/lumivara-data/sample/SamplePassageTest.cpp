#include "lumivara-data/sample/PageWriter.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

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

TEST(PageWriter, SetsBothLanguagesSideBySide)
{
    const SamplePassage passage =
        ParsePassages(u"@text 1\n@repeat 2\n{n}[^1] | ă[^1]\n@end\n@note 1 n | m"_s, u"p"_s).value(u"text 1"_s);
    const QByteArray page = PageWriter({}).ParallelPage(u"Pā"_s, u"Vi"_s, passage);
    EXPECT_EQ(page.count("<td"), 8); // titles, two paragraphs, note
    EXPECT_LT(page.indexOf(">2<"), page.lastIndexOf(">ă<"));
    // The notes of both languages stand in one page: their anchors must not meet.
    EXPECT_TRUE(page.count("name=\"pi-note-1\"") == 1 && page.count("name=\"vi-note-1\"") == 1);
}

} // namespace
