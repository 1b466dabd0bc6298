#include "base/PlainText.h"

#include <gmock/gmock.h>

namespace {

// Once as it stands, and once behind and before so much text that whole steps of units are taken.
TEST(StripHtmlTable, GivesThePlainText)
{
    const std::tuple<const char *, QString, QString> rows[]{
        {"NothingGivesNothing", u""_qs, u""_qs},
        {"TagsGo", u"a<b x='<'>c</b>"_qs, u"ac"_qs},
        {"AttributesMayEndTheTag", u"<a title='>'>x"_qs, u"'x"_qs},
        {"LoneClosingMarkGoes", u"a > b>"_qs, u"a  b"_qs},
        {"LineEndsGoAndJoin", u"one\r\ntwo\nthree<a\nb>"_qs, u"onetwothree"_qs},
        {"OfARunOfBlanksTheLastStays", u"a \t  \tb"_qs, u"a\tb"_qs},
        {"BlanksBeforeTagsGo", u"one  <b>two\t<i>three"_qs, u"onetwothree"_qs},
        {"BlanksBeforeLineEndsGo", u"one \r two\t\n three"_qs, u"one two three"_qs},
        {"BlanksBehindATagStay", u"<b> one"_qs, u" one"_qs},
        {"BlanksWithATagBetweenStay", u" <b> one"_qs, u" one"_qs},
        {"EntitiesDecode", u"&quot;&apos;&gt;&lt;&amp;"_qs, u"\"'><&"_qs},
        {"OneLevelOnly", u"&amp;lt;&amp;amp;"_qs, u"&lt;&amp;"_qs},
        {"AcrossATag", u"&l<b>t</b>;& <i>gt;"_qs, u"<>"_qs},
        {"DecodedMarksAreNoTags", u"&lt;b&gt; x"_qs, u"<b> x"_qs},
        {"OthersStay", u"a&nbsp;b&#38;&LT;& lt;&&lt"_qs, u"a&nbsp;b&#38;&LT;& lt;&&lt"_qs},
        {"SurrogatesAndLettersStay", u"\xD83D\xDE00 \xDE00\xD83D ṭā \u203C \u0A3C"_qs,
         u"\xD83D\xDE00 \xDE00\xD83D ṭā \u203C \u0A3C"_qs}};
    for (const auto &[rule, html, plain] : rows) {
        SCOPED_TRACE(rule);
        EXPECT_EQ(StripHtml(html), plain);
        for (int shift = 0; shift < 20; ++shift) {
            const QString text(20 + shift, u'ṭ');
            EXPECT_EQ(StripHtml(text + html + u'>' + text), text + plain + text) << shift;
        }
    }
}

TEST(StripHtml, KeepsTheLastBlankAndLosesWhatFollowsAnUnclosedTag)
{
    EXPECT_EQ(StripHtml(u"one \t"_qs), u"one\t"_qs);
    EXPECT_EQ(StripHtml(u"one <two three"_qs), u"one"_qs);
    EXPECT_EQ(StripHtml(u"one <two"_qs + QString(40, u' ')), u"one"_qs);
    const QString nul = u'a' + QString(20, QChar(u'\0'));
    EXPECT_EQ(StripHtml(nul + u"<b>"_qs), nul);
}

} // namespace
