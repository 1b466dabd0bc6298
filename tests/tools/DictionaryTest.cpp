#include "lumivara-data/DictionaryOrder.h"
#include "lumivara-data/DictionarySource.h"
#include "lumivara-data/Verbs.h"

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

TEST(DictionarySource, EntriesKeepTheirMarkUpAndFormsLeadToTheirWordInEachKindThatHasIt)
{
    auto entries = ParseDictionary(u"# note\ndictionary 5\n\n% gāma\n@gāma\n- làng\n\n% ādi\n@ādi\n"_s, u"5"_s) +
                   ParseDictionary(u"dictionary 8\n% gāma\nx\n% dīpa\nx\n"_s, u"8"_s);
    AddForms(entries, u"# note\nforms 5 8\n\ngāma: gāmo gāmaṃ\ndīpa: dīpo\n"_s, u"f.txt"_s);
    QByteArray all;
    for (const DictionaryEntry &entry : entries)
        all +=
            QByteArray::number(entry.kind) + (entry.word + entry.forms.join(u',')).toUtf8() + '=' + entry.content + '|';
    EXPECT_EQ(all.toStdString(), "5gāmagāmo,gāmaṃ=@gāma\n- làng|5ādi=@ādi|8gāmagāmo,gāmaṃ=x|8dīpadīpo=x|");
}

TEST(BadDictionaries, AreRefusedWithTheirLine)
{
    const std::pair<QString, const char *> rows[]{
        {u"% a\n"_s, "d.txt:1: a word before \"dictionary KIND\""},
        {u"dictionary 5\n% a\nx\n% a\n"_s, "d.txt:4: \"a\" comes twice"},
        {u"dictionary 5\n% "_s + QString(64, u'ā'), "d.txt:2: a word has 1 to 63 characters"},
        {u"dictionary 5\n% a\n\n% b\nx\n"_s, "d.txt:2: \"a\" has no entry"},
        {u"forms 5\nc: d\n"_s, "d.txt:2: no dictionary has the word \"c\""},
        {u"forms 5\na: b\n"_s, "d.txt:2: the form \"b\" is a word already"},
        {u"forms 5 9\na: d\n"_s, "d.txt:1: the kind is a number from 1 to 8"}};
    for (const auto &[source, message] : rows) {
        std::string told;
        try {
            auto entries = ParseDictionary(u"dictionary 5\n% a\nx\n% b\nx\n"_s, u"d.txt"_s);
            if (source.startsWith(u"forms"_s))
                AddForms(entries, source, u"d.txt"_s);
            else
                ParseDictionary(source, u"d.txt"_s);
        } catch (const ToolError &error) {
            told = error.what();
        }
        EXPECT_EQ(told, message);
    }
}

} // namespace
