#include "lumivara-data/DictionaryOrder.h"
#include "lumivara-data/DictionarySource.h"
#include "lumivara-data/Verbs.h"

#include <gmock/gmock.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int EnglishVietnamese = 1;
constexpr int VietnameseEnglish = 2;
constexpr int FrenchVietnamese = 3;
constexpr int PaliVietnamese = 5;
constexpr int EnglishPali = 7;

struct Order
{
    const char *rule;
    int kind;
    const char16_t *inOrder;
};

class DictionaryOrderTable : public testing::TestWithParam<Order>
{};

TEST_P(DictionaryOrderTable, SortsAsItsLanguageDoes)
{
    const QStringList expected = QString::fromUtf16(GetParam().inOrder).split(u',');
    QStringList words(expected.crbegin(), expected.crend());
    std::stable_sort(words.begin(), words.end(), [](const QString &a, const QString &b) {
        return DictionarySortKey(GetParam().kind, a) < DictionarySortKey(GetParam().kind, b);
    });
    EXPECT_EQ(words.join(u',').toStdString(), expected.join(u',').toStdString());
}

INSTANTIATE_TEST_SUITE_P(
    Rules, DictionaryOrderTable,
    testing::Values(Order{"PaliVowelsByLength", PaliVietnamese, u"aka,āka,ika,īka,uka,ūka,eka,oka"},
                    Order{"PaliAspiratesAreLetters", PaliVietnamese, u"kūpa,koṭi,khaṇa,gaṇa"},
                    Order{"PaliRetroflexBeforeDental", PaliVietnamese, u"ñāṇa,ṭhāna,ḍasa,tama,thera,dhamma,nāma"},
                    Order{"PaliLastLetters", PaliVietnamese, u"saṅgha,hāra,ḷa,ṃ"},
                    Order{"PaliNiggahitaAfterEveryLetter", PaliVietnamese, u"saka,sati,sahāya,saṃvara"},
                    Order{"PaliCapitalsCountAsSmall", PaliVietnamese, u"ānanda,Āpa,āpatti"},
                    Order{"ShorterFirst", PaliVietnamese, u"bhikkhu,bhikkhunī"},
                    Order{"VietnameseLettersBeforeTones", VietnameseEnglish, u"ma,mà,mả,mã,má,mạ,man,mă,mâ,mo"},
                    Order{"VietnameseToneBeforeTheNextSyllable", VietnameseEnglish, u"ba,ba mươi,bà,bà con,bả"},
                    Order{"VietnameseHyphenIsABlank", VietnameseEnglish, u"bố con,bố-tát,bố trí"},
                    Order{"VietnameseD", VietnameseEnglish, u"dạy,do,đa,e"},
                    Order{"BlankBeforeLetters", VietnameseEnglish, u"an lạc,anh"},
                    Order{"EnglishBlankDigitLetter", EnglishVietnamese, u"go forth,go2,goat,gods,god’s"},
                    Order{"LatinIgnoresMarks", EnglishPali, u"cafe,café,cafés,cage"},
                    Order{"FrenchAccentsFromTheEnd", FrenchVietnamese, u"cote,côte,coté,côté,côtes"},
                    Order{"FrenchLigature", FrenchVietnamese, u"odeur,œil,officier"}),
    [](const auto &row) { return std::string(row.param.rule); });

TEST(DictionarySourceTest, EntriesKeepTheirMarkUp)
{
    const auto entries =
        ParseDictionary(u"# note\ndictionary 5\n\n% ādi\n@ādi\n- đầu\n\n% anta\n@anta\n"_s, u"d.txt"_s);
    ASSERT_EQ(entries.size(), 2);
    EXPECT_EQ(entries[0].kind, 5);
    EXPECT_EQ(entries[0].word, u"ādi"_s);
    EXPECT_EQ(entries[0].content, "@ādi\n- đầu");
    EXPECT_EQ(entries[1].content, "@anta");
}

TEST(DictionarySourceTest, FormsLeadToTheirWordInEachKindThatHasIt)
{
    auto entries = ParseDictionary(u"dictionary 5\n% gāma\nx\n"_s, u"5"_s) +
                   ParseDictionary(u"dictionary 8\n% gāma\nx\n% dīpa\nx\n"_s, u"8"_s);
    AddForms(entries, u"# note\nforms 5 8\n\ngāma: gāmo gāmaṃ\ndīpa: dīpo\n"_s, u"f.txt"_s);
    EXPECT_EQ(entries[0].forms, (QStringList{u"gāmo"_s, u"gāmaṃ"_s}));
    EXPECT_EQ(entries[1].forms, entries[0].forms);
    EXPECT_EQ(entries[2].forms, QStringList{u"dīpo"_s});
}

struct BadDictionary
{
    const char *rule;
    QString source;
    const char *message;
};

class BadDictionaries : public testing::TestWithParam<BadDictionary>
{};

TEST_P(BadDictionaries, AreRefusedWithTheirLine)
{
    try {
        if (GetParam().source.startsWith(u"forms"_s)) {
            auto entries = ParseDictionary(u"dictionary 5\n% a\nx\n% b\nx\n"_s, u"d.txt"_s);
            AddForms(entries, GetParam().source, u"d.txt"_s);
        } else {
            ParseDictionary(GetParam().source, u"d.txt"_s);
        }
        ADD_FAILURE() << "accepted";
    } catch (const ToolError &error) {
        EXPECT_STREQ(error.what(), GetParam().message);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Rules, BadDictionaries,
    testing::Values(
        BadDictionary{"NoKind", u"% a\n"_s, "d.txt:1: a word before \"dictionary KIND\""},
        BadDictionary{"KindNine", u"dictionary 9\n"_s, "d.txt:1: the kind is a number from 1 to 8"},
        BadDictionary{"WordTwice", u"dictionary 5\n% a\nx\n% a\n"_s, "d.txt:4: \"a\" comes twice"},
        BadDictionary{"LongWord", u"dictionary 5\n% "_s + QString(64, u'ā'), "d.txt:2: a word has 1 to 63 characters"},
        BadDictionary{"NoEntry", u"dictionary 5\n% a\n\n% b\nx\n"_s, "d.txt:2: \"a\" has no entry"},
        BadDictionary{"FormOfNothing", u"forms 5\nc: d\n"_s, "d.txt:2: no dictionary has the word \"c\""},
        BadDictionary{"FormThatIsAWord", u"forms 5\na: b\n"_s, "d.txt:2: the form \"b\" is a word already"},
        BadDictionary{"FormsOfKindNine", u"forms 5 9\na: d\n"_s, "d.txt:1: the kind is a number from 1 to 8"},
        BadDictionary{"StrayText", u"dictionary 5\nx\n"_s, "d.txt:2: text before the first word"}),
    [](const auto &row) { return std::string(row.param.rule); });

} // namespace
