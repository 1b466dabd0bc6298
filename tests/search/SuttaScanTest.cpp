#include "search/SuttaScan.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

TEST(SuttaScan, GivesTheFirstHitOfThePlainText)
{
    const QString longText(200, u'x');
    const std::tuple<const char *, QByteArray, QString, std::optional<QString>> rows[]{
        {"EmptyPage", "", u"a"_qs, {}},
        {"BareByteOrderMark", "\xEF\xBB\xBF", u""_qs, {}},
        {"SampleKeepsItsCase", "Ngài BUDDHA dạy", u"buddha"_qs, u"BUDDHA dạy"_qs},
        {"OtherLettersKeepTheirCase", "Đức Á", u"đức"_qs, {}},
        {"InsideAWord", "dhamma", u"MA"_qs, u"ma"_qs},
        {"AcrossTagsAndLines", "đi<b>ề\n</b>u", u"điều"_qs, u"điều"_qs},
        {"NotInsideATag", "<a name='vinaya'>x</a>", u"vinaya"_qs, {}},
        {"NotBehindAnUnclosedTag", "a <b vinaya", u"vinaya"_qs, {}},
        {"NotInsideAnEntity", "1&lt;2", u"lt"_qs, {}},
        {"MarkupInTheWord", "&lt;b&gt;", u"<B>"_qs, u"<b>"_qs},
        {"OneCombiningMark", "a<i>\xCC\xA3</i>b", QString(QChar(0x323)), QString(QChar(0x323)) + u'b'},
        {"HalfAPair", "a\xF0\x9F\x98\x80", QString(QChar(0xDE00)), QString(QChar(0xDE00))},
        {"CharacterTornByATag", "\xC4<b>\x91</b>", u"đ"_qs, {}},
        {"SampleEndsInsideAPair", (u"a"_qs + longText.left(125) + u"\xD83D\xDE00"_qs).toUtf8(), u"ax"_qs,
         u"a"_qs + longText.left(125) + QChar(0xD83D)},
        {"WordlongTexterThanThePage", "xxx", longText, {}}};
    for (const auto &[rule, page, word, sample] : rows)
        EXPECT_EQ(SuttaScan(word).FirstHit(page), sample) << rule;
}

// A word that nearly fits everywhere must not cost its length at each place: that would take hours here.
TEST(SuttaScan, EndsSoonOnPagesMadeToDelayIt)
{
    const QByteArray page(3'000'000, 'a');
    const QString word = QString(10'000, u'a');
    for (const QString &absent : {word + u'b', u'b' + word, word + u'b' + word}) {
        EXPECT_EQ(SuttaScan(absent).FirstHit(page), std::nullopt);
        EXPECT_EQ(SuttaScan(absent).FirstHit(page + absent.toUtf8()), absent.left(127));
    }
}

} // namespace
