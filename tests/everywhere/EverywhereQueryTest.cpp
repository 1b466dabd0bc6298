#include "everywhere/EverywhereQuery.h"

#include <QStringList>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

/// The parts as they were typed, phrases in brackets.
QString PartsOf(const QString &typed, const EverywhereSwitches &switches = {})
{
    const EverywhereQuery query(typed, switches);
    QStringList parts;
    for (const EverywherePart &part : query.Parts())
        parts += part.isPhrase ? u'[' + part.typed + u']' : part.typed;
    return parts.join(u'|');
}

TEST(EverywhereQuery, IsMadeOfWordsAndQuotedPhrases)
{
    const std::tuple<const char *, QString, QString> rows[]{
        {"Nothing", u" \t\n"_s, u""_s},
        {"Words", u"  tỳ\u00A0khưu \n kathina "_s, u"tỳ|khưu|kathina"_s},
        {"APhrase", u"\"tỳ   khưu\""_s, u"[tỳ khưu]"_s},
        {"CurlyQuotes", u"“tỳ khưu” „ka\nthina“"_s, u"[tỳ khưu]|[ka thina]"_s},
        {"AmongWords", u"a \"b c\" d"_s, u"a|[b c]|d"_s},
        {"AgainstAWord", u"ab\"c d\"ef"_s, u"ab|[c d]|ef"_s},
        {"NotClosed", u"a \"b c "_s, u"a|[b c]"_s},
        {"EmptyQuotes", u"\"\" \"  \" a"_s, u"a"_s},
        {"TwiceTheSame", u"Ñāṇa nana \"nana\""_s, u"Ñāṇa"_s},
        {"WithoutWidth", u"ka\u00ADthi\u200Bna \u00AD"_s, u"kathina"_s},
        {"ALoneAccent", u"\u0304 a"_s, u"a"_s},
        {"Signs", u"§ a-b"_s, u"§|a-b"_s},
    };
    for (const auto &[rule, typed, parts] : rows)
        EXPECT_EQ(PartsOf(typed), parts) << rule;
    EXPECT_EQ(PartsOf(u"Ñāṇa nana NANA"_s, {.exactMarks = true}), u"Ñāṇa|nana"_s);
    EXPECT_EQ(PartsOf(u"Ñāṇa nana Nana"_s, {.exactCase = true}), u"Ñāṇa|nana"_s);
}

TEST(EverywhereQuery, TakesAPastedPassageAsAPhraseAndCutsItOff)
{
    QString words;
    for (int word = 0; word < EverywhereQuery::MostParts; ++word)
        words += u"w%1 "_s.arg(word);
    EXPECT_EQ(EverywhereQuery(words, {}).Parts().size(), EverywhereQuery::MostParts);
    EXPECT_EQ(PartsOf(words + u"\"and more\""_s), u'[' + words + u"and more]"_s);

    const QString longest = QString(EverywhereQuery::MostTyped - 1, u'x');
    EXPECT_EQ(PartsOf(longest + u"yz"_s), longest + u'y');
    EXPECT_EQ(PartsOf(longest + u"\U0001D11E"_s), longest); // no half of a letter
}

TEST(EverywhereQuery, IsEmptyWithNothingToSeekOrNowhereToLook)
{
    EXPECT_TRUE(EverywhereQuery().IsEmpty());
    EXPECT_TRUE(EverywhereQuery(u" "_s, {}).IsEmpty());
    EXPECT_FALSE(EverywhereQuery(u"a"_s, {}).IsEmpty());
    EverywhereSwitches nowhere{
        .pali = false, .vietnamese = false, .english = false, .names = false, .marks = false, .wholeWords = true};
    EXPECT_TRUE(EverywhereQuery(u"a"_s, nowhere).IsEmpty());
    nowhere.marks = true;
    EXPECT_FALSE(EverywhereQuery(u"a"_s, nowhere).IsEmpty());
}

} // namespace
