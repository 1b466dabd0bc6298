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

TEST(DictionaryOrder, SortsAsItsLanguageDoes)
{
    const struct
    {
        const char *rule;
        int kind;
        const char16_t *inOrder;
    } rows[]{{"PaliVowelsByLength", PaliVietnamese, u"aka,āka,ika,īka,uka,ūka,eka,oka"},
             {"PaliAspiratesAreLetters", PaliVietnamese, u"kūpa,koṭi,khaṇa,gaṇa"},
             {"PaliRetroflexBeforeDental", PaliVietnamese, u"ñāṇa,ṭhāna,ḍasa,tama,thera,dhamma,nāma"},
             {"PaliLastLetters", PaliVietnamese, u"saṅgha,hāra,ḷa,ṃ"},
             {"PaliNiggahitaAfterEveryLetter", PaliVietnamese, u"saka,sati,sahāya,saṃvara"},
             {"PaliCapitalsCountAsSmall", PaliVietnamese, u"ānanda,Āpa,āpatti"},
             {"ShorterFirst", PaliVietnamese, u"bhikkhu,bhikkhunī"},
             {"VietnameseLettersBeforeTones", VietnameseEnglish, u"ma,mà,mả,mã,má,mạ,man,mă,mâ,mo"},
             {"VietnameseToneBeforeTheNextSyllable", VietnameseEnglish, u"ba,ba mươi,bà,bà con,bả"},
             {"VietnameseHyphenIsABlank", VietnameseEnglish, u"bố con,bố-tát,bố trí"},
             {"VietnameseD", VietnameseEnglish, u"dạy,do,đa,e"},
             {"BlankBeforeLetters", VietnameseEnglish, u"an lạc,anh"},
             {"EnglishBlankDigitLetter", EnglishVietnamese, u"go forth,go2,goat,gods,god’s"},
             {"LatinIgnoresMarks", EnglishPali, u"cafe,café,cafés,cage"},
             {"FrenchAccentsFromTheEnd", FrenchVietnamese, u"cote,côte,coté,côté,côtes"},
             {"FrenchLigature", FrenchVietnamese, u"odeur,œil,officier"}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.rule);
        const QStringList expected = QString::fromUtf16(row.inOrder).split(u',');
        QStringList words(expected.crbegin(), expected.crend());
        std::stable_sort(words.begin(), words.end(), [&row](const QString &a, const QString &b) {
            return DictionarySortKey(row.kind, a) < DictionarySortKey(row.kind, b);
        });
        EXPECT_EQ(words.join(u',').toStdString(), expected.join(u',').toStdString());
    }
}

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

TEST(BadDictionaries, AreRefusedWithTheirLine)
{
    const std::tuple<const char *, QString, const char *> rows[]{
        {"NoKind", u"% a\n"_s, "d.txt:1: a word before \"dictionary KIND\""},
        {"KindNine", u"dictionary 9\n"_s, "d.txt:1: the kind is a number from 1 to 8"},
        {"WordTwice", u"dictionary 5\n% a\nx\n% a\n"_s, "d.txt:4: \"a\" comes twice"},
        {"LongWord", u"dictionary 5\n% "_s + QString(64, u'ā'), "d.txt:2: a word has 1 to 63 characters"},
        {"NoEntry", u"dictionary 5\n% a\n\n% b\nx\n"_s, "d.txt:2: \"a\" has no entry"},
        {"FormOfNothing", u"forms 5\nc: d\n"_s, "d.txt:2: no dictionary has the word \"c\""},
        {"FormThatIsAWord", u"forms 5\na: b\n"_s, "d.txt:2: the form \"b\" is a word already"},
        {"FormsOfKindNine", u"forms 5 9\na: d\n"_s, "d.txt:1: the kind is a number from 1 to 8"},
        {"StrayText", u"dictionary 5\nx\n"_s, "d.txt:2: text before the first word"}};
    for (const auto &[rule, source, message] : rows) {
        SCOPED_TRACE(rule);
        try {
            if (source.startsWith(u"forms"_s)) {
                auto entries = ParseDictionary(u"dictionary 5\n% a\nx\n% b\nx\n"_s, u"d.txt"_s);
                AddForms(entries, source, u"d.txt"_s);
            } else {
                ParseDictionary(source, u"d.txt"_s);
            }
            ADD_FAILURE() << "accepted";
        } catch (const ToolError &error) {
            EXPECT_STREQ(error.what(), message);
        }
    }
}

} // namespace
