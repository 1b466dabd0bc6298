#include "toolkit/FieldText.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

TEST(FieldText, KeepsTheKindOfLineEndsWithoutGrowing)
{
    const struct
    {
        QString text, lineEnd, written;
    } rows[]{
        {u"one"_s, u"\r\n"_s, u"one"_s},
        {u"a\r\nb\r\n"_s, u"\r\n"_s, u"a\r\nb\r\n"_s},
        {u"a\nb"_s, u"\n"_s, u"a\nb"_s},
        {u"a\r\rb"_s, u"\r"_s, u"a\r\rb"_s},
        {u"a\r\nb\nc\rd"_s, u"\n"_s, u"a\nb\nc\nd"_s},
        {u"a\r\nb\rc"_s, u"\n"_s, u"a\nb\nc"_s},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(LineEndOf(row.text), row.lineEnd) << qPrintable(row.text);
        EXPECT_EQ(WithLineEnds(WithLineFeeds(row.text), row.lineEnd), row.written) << qPrintable(row.text);
    }
}

TEST(FieldText, CutsBetweenCharacters)
{
    const struct
    {
        QString text;
        int room;
        QString part;
    } rows[]{
        {u"abc"_s, 3, u"abc"_s},       {u"abc"_s, 2, u"ab"_s},      {u"abc"_s, -1, u""_s},
        {u"a\U0001F600"_s, 2, u"a"_s}, {u"\U0001F600"_s, 1, u""_s}, {u"a\U0001F600"_s, 3, u"a\U0001F600"_s},
    };
    for (const auto &row : rows)
        EXPECT_EQ(FittingPart(row.text, row.room), row.part) << qPrintable(row.text) << row.room;
}
