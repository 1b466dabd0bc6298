#include "toolkit/bound/FieldText.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

TEST(FieldText, KeepsTheKindOfLineEndsWithoutGrowing)
{
    for (const auto &[text, written] : {std::pair(u"a\r\nb\r\n"_s, u"a\r\nb\r\n"_s),
                                        {u"a\r\rb"_s, u"a\r\rb"_s},
                                        {u"a\r\nb\nc\rd"_s, u"a\nb\nc\nd"_s},
                                        {u"a\r\nb\rc"_s, u"a\nb\nc"_s}})
        EXPECT_EQ(WithLineEnds(WithLineFeeds(text), LineEndOf(text)), written) << qPrintable(text);
    EXPECT_EQ(LineEndOf(u"one"_s), u"\r\n"_s);
}

TEST(FieldText, CutsBetweenCharacters)
{
    for (const auto &[text, room, part] : {std::tuple(u"abc"_s, 3, u"abc"_s),
                                           {u"abc"_s, 2, u"ab"_s},
                                           {u"abc"_s, -1, u""_s},
                                           {u"a\U0001F600"_s, 2, u"a"_s},
                                           {u"a\U0001F600"_s, 3, u"a\U0001F600"_s}})
        EXPECT_EQ(FittingPart(text, room), part) << qPrintable(text) << room;
}
