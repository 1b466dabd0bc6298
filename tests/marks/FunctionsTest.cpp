#include "marks/Functions.h"

#include <gmock/gmock.h>

#include <string>

namespace {

struct StripCase
{
    const char *rule;
    QString html;
    QString plain;
};

class StripHtmlTable : public testing::TestWithParam<StripCase>
{};

// Once as it stands, and once behind and before so much text that whole steps of units are taken.
TEST_P(StripHtmlTable, GivesThePlainText)
{
    EXPECT_EQ(StripHtml(GetParam().html), GetParam().plain);
    for (int shift = 0; shift < 20; ++shift) {
        const QString text(20 + shift, u'ṭ');
        EXPECT_EQ(StripHtml(text + GetParam().html + u'>' + text), text + GetParam().plain + text) << shift;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Rules, StripHtmlTable,
    testing::Values(StripCase{"NothingGivesNothing", u""_qs, u""_qs},
                    StripCase{"TagsGo", u"a<b x='<'>c</b>"_qs, u"ac"_qs},
                    StripCase{"AttributesMayEndTheTag", u"<a title='>'>x"_qs, u"'x"_qs},
                    StripCase{"LoneClosingMarkGoes", u"a > b>"_qs, u"a  b"_qs},
                    StripCase{"LineEndsGoAndJoin", u"one\r\ntwo\nthree<a\nb>"_qs, u"onetwothree"_qs},
                    StripCase{"OfARunOfBlanksTheLastStays", u"a \t  \tb"_qs, u"a\tb"_qs},
                    StripCase{"BlanksBeforeTagsGo", u"one  <b>two\t<i>three"_qs, u"onetwothree"_qs},
                    StripCase{"BlanksBeforeLineEndsGo", u"one \r two\t\n three"_qs, u"one two three"_qs},
                    StripCase{"BlanksBehindATagStay", u"<b> one"_qs, u" one"_qs},
                    StripCase{"BlanksWithATagBetweenStay", u" <b> one"_qs, u" one"_qs},
                    StripCase{"EntitiesDecode", u"&quot;&apos;&gt;&lt;&amp;"_qs, u"\"'><&"_qs},
                    StripCase{"OneLevelOnly", u"&amp;lt;&amp;amp;"_qs, u"&lt;&amp;"_qs},
                    StripCase{"AcrossATag", u"&l<b>t</b>;& <i>gt;"_qs, u"<>"_qs},
                    StripCase{"DecodedMarksAreNoTags", u"&lt;b&gt; x"_qs, u"<b> x"_qs},
                    StripCase{"OthersStay", u"a&nbsp;b&#38;&LT;& lt;&&lt"_qs, u"a&nbsp;b&#38;&LT;& lt;&&lt"_qs},
                    StripCase{"SurrogatesAndLettersStay", u"\xD83D\xDE00 \xDE00\xD83D ṭā \u203C \u0A3C"_qs,
                              u"\xD83D\xDE00 \xDE00\xD83D ṭā \u203C \u0A3C"_qs}),
    [](const auto &row) { return std::string(row.param.rule); });

TEST(StripHtml, KeepsTheLastBlankAndLosesWhatFollowsAnUnclosedTag)
{
    EXPECT_EQ(StripHtml(u"one \t"_qs), u"one\t"_qs);
    EXPECT_EQ(StripHtml(u"one <two three"_qs), u"one"_qs);
    EXPECT_EQ(StripHtml(u"one <two"_qs + QString(40, u' ')), u"one"_qs);
    const QString nul = u'a' + QString(20, QChar(u'\0'));
    EXPECT_EQ(StripHtml(nul + u"<b>"_qs), nul);
}

} // namespace
