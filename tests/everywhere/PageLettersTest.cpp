#include "everywhere/EverywhereRanges.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

QString Read(const QByteArray &page)
{
    return EverywhereVisibleText(page);
}

TEST(VisibleText, IsWhatABrowserShows)
{
    const std::tuple<const char *, QByteArray, QString> rows[]{
        {"Nothing", "", u""_s},
        {"TagsInsideWords", "ka<b>thi</b><span class=x>na</span>", u"kathina"_s},
        {"BlocksEndWords", "one<p>two</p>three<br>four<TD>five<hr/>six", u"one two three four five six"_s},
        {"BlanksAreOne", " \r\n a \t\n <i> </i>&nbsp;&#10;b<p> <p>c", u"a b c"_s},
        {"QuotesHoldATag", "a<b title='x>y' id=\"<p>\">b</b>c", u"abc"_s},
        {"QuotesOutsideOfValuesDoNot", "a<b it's>b</b>'c", u"ab'c"_s},
        {"LoneMarks", "a < b <3 c > d </ e", u"a < b <3 c > d"_s},
        {"Comments", "a<!-- <p> > -->b<!-->c<!DOCTYPE x>d<?php e>f</3>g", u"abcdfg"_s},
        {"CommentWithoutEnd", "a<!-- b", u"a"_s},
        {"TagWithoutEnd", "a<b title='x> b", u"a"_s},
        {"NotShown",
         "<head><title>t</title><style>p{}</style></head>a<script>if (a</p>) b</SCRIPT >c"
         "<textarea><b></textarea><object>x</objects></object>d",
         u"acd"_s},
        {"ElementWithoutEnd", "a<style>b", u"a"_s},
        {"Entities", "&amp;lt; &Amacr;&ntilde;&dstrok;&#257;&#x1E43;&#X1E43 &hellip;&rdquo;", u"&lt; Āñđāṃṃ …”"_s},
        {"EntitiesWithoutEnd", "R&D &nosuch; & &#; &#x; &ampb &notit &euro x&lt",
         u"R&D &nosuch; & &#; &#x; &b ¬it &euro x<"_s},
        {"NumbersOfNoCharacters", "&#0;&#xD800;&#9999999999;&#150;", u"\uFFFD\uFFFD\uFFFD–"_s},
        {"WithoutWidth",
         "\xEF\xBB\xBF"
         "ka&shy;thi\xE2\x80\x8Bna&zwj;",
         u"kathina"_s},
        {"BeyondU+FFFF", "\xF0\x9D\x84\x9E&#x1D11E;", u"\U0001D11E\U0001D11E"_s},
        {"Invalid",
         "a\xFF"
         "b\xE1\xB9"
         "c\xED\xA0\x80"
         "d\xF4\x90\x80\x80"
         "e\xC0\xAF\xE1",
         u"a\uFFFDb\uFFFD\uFFFDc\uFFFD\uFFFD\uFFFDd\uFFFD\uFFFD\uFFFD\uFFFDe\uFFFD\uFFFD\uFFFD"_s},
        {"Nul", QByteArray("a\0b", 3), u"ab"_s},
    };
    for (const auto &[rule, page, text] : rows) {
        const QString read = Read(page);
        EXPECT_EQ(read.endsWith(u' ') ? read.chopped(1) : read, text) << rule;
    }
}

// Each could take hours if reading began anew somewhere.
TEST(VisibleText, TakesTimeInProportion)
{
    for (const QByteArray piece : {"<", "</", "<!--", "<b title='", "<style>", "&", "&#", "<b ", "&nbs", "</style"})
        Read(piece.repeated(100'000));
}

} // namespace
