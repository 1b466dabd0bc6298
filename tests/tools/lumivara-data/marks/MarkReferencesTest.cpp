#include "lumivara-data/marks/MarkReferences.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(MarkReferences, PartsAreCountedAsTheProgramCountsBlocks)
{
    const ReferencedPage page(
        "<html><head><title>t</title><style>p{}</style></head><body><h1><span>Head</span></h1> <p>one <i>two</i></p>"
        "<p> &nbsp; "
        "</p><p>\u200B</p><div>three<br>four</div><table><tr><td><p>left</p></td><td><p>right</p><p>lower</p>"
        "<table><tr><td>inner<tr><td>deeper</table></td><tr><td>next</td></tr></table>"_ba +
        "<tr>loose<p>l&amp;st");
    EXPECT_EQ(page.Letters(), u"Headonetwothreefourleftrightlowerinnerdeepernextloosel&st"_s);
    for (const auto &[words, part] : {std::pair(u"Head"_s, u"1"_s),
                                      {u"onetwothree"_s, u"2"_s},
                                      {u"two"_s, u"2"_s},
                                      {u"three"_s, u"4"_s}, // what nobody sees is a block all the same
                                      {u"four"_s, u"5"_s},
                                      {u"left"_s, u"6"_s},
                                      {u"lower"_s, u"6"_s},
                                      {u"deeper"_s, u"6"_s},
                                      {u"next"_s, u"7"_s},
                                      {u"loose"_s, u"8"_s},
                                      {u"l&st"_s, u"9"_s},
                                      {u"absent"_s, QString()},
                                      {QString(), QString()}})
        EXPECT_EQ(page.PartWith(words), part) << words.toStdString();
}

TEST(MarkReferences, AnIdOfThePageNamesThePart)
{
    const ReferencedPage page("<p id='note'>zero<p><a id=pli:1.1></a>a <span ID='pli:1.2'>b</span></p><p>c</p>");
    for (const auto &[words, part] :
         {std::pair(u"zero"_s, u"1"_s), {u"ab"_s, u"1.1"_s}, {u"b"_s, u"1.2"_s}, {u"c"_s, u"1.2"_s}})
        EXPECT_EQ(page.PartWith(words), part) << words.toStdString();
}

TEST(MarkReferences, WithoutACanonTheNumberIsTheReference)
{
    MarkReferences references(nullptr);
    Mark mark;
    mark.collection = 6;
    mark.text = 1101;
    EXPECT_EQ(references.Of(mark), u"1101"_s);
    mark.collection = 2;
    EXPECT_EQ(references.Of(mark), QString()) << "a text of another collection";
}
