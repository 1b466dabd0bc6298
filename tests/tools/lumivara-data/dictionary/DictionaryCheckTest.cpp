#include "lumivara-data/dictionary/DictionaryCheck.h"
#include "lumivara-data/dictionary/DictionaryOrder.h"

#include <gmock/gmock.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

TEST(DictionaryOrder, SortsAsItsLanguageDoes)
{
    constexpr int englishVietnamese = 1, vietnameseEnglish = 2, frenchVietnamese = 3, pali = 5, englishPali = 7;
    const std::pair<int, const char16_t *> rows[]{
        {pali, u"aka,āka,ika,īka,uka,ūka,eka,oka"}, // vowels by length
        {pali, u"kūpa,koṭi,khaṇa,gaṇa"},            // aspirates are letters
        {pali, u"ñāṇa,ṭhāna,ḍasa,tama,thera,dhamma,nāma"},
        {pali, u"saka,saṅgha,sati,sahāya,saṃvara,hāra,ḷa,ṃ"},
        {pali, u"ānanda,Āpa,āpatti,bhikkhu,bhikkhunī"},
        {vietnameseEnglish, u"ma,mà,mả,mã,má,mạ,man,mă,mâ,mo"}, // letters before tones
        {vietnameseEnglish, u"an lạc,anh,ba,ba mươi,bà,bà con,bả,bố con,bố-tát,bố trí,dạy,do,đa,e"},
        {englishVietnamese, u"go forth,go2,goat,gods,god’s"},
        {englishPali, u"cafe,café,cafés,cage"},
        {frenchVietnamese, u"cote,côte,coté,côté,côtes"}, // accents from the end
        {frenchVietnamese, u"odeur,œil,officier"}};
    for (const auto &[kind, inOrder] : rows) {
        const QStringList expected = QString::fromUtf16(inOrder).split(u',');
        QStringList words(expected.crbegin(), expected.crend());
        std::stable_sort(words.begin(), words.end(), [kind = kind](const QString &a, const QString &b) {
            return DictionarySortKey(kind, a) < DictionarySortKey(kind, b);
        });
        EXPECT_EQ(words.join(u',').toStdString(), expected.join(u',').toStdString());
    }
}

TEST(TagFaults, AreNamed)
{
    for (const auto &[html, fault] : std::initializer_list<std::pair<const char *, const char *>>{
             {"- <B>a <i>b</i></b>\n=<a href=\"x>y\">c</a> a<br>b<img src=x><hr/>c<span/> < b, 1 <2, <- c", ""},
             {"<ul><li>a<li>b</ul><p>c<!-- <b> -->", ""},
             {"<b>a <i>b</i>", "<b> is not closed"},
             {"a</i>", "</i> closes nothing"},
             {"<b><i>a</b></i>", "</b> comes before </i>"},
             {"a <b", "the tag <b has no end"}})
        EXPECT_EQ(TagFault(html).toStdString(), fault) << html;
}

TEST(DictionaryChecker, TellsTheFirstFaultsOfASortAndCountsTheRest)
{
    DictionaryChecker checker(5);
    for (int i = 0; i < 30; ++i) {
        const QString word = u"a"_s.repeated(i + 1);
        checker.AddWord(word);
        checker.AddEntry(word, {}, "x");
    }
    checker.AddExistence(u"a"_s, false);
    DictionaryReport report;
    checker.ReportInto(report);
    EXPECT_EQ(report.faultCount, 31);
    EXPECT_EQ(report.findings.size(), 22);
    EXPECT_EQ(report.findings.last().fault, u"30 empty entries in all"_s);
}

} // namespace
