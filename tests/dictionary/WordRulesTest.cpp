#include "dictionary/WordRules.h"

#include <gmock/gmock.h>

#include <QSet>

namespace {

TEST(WordForms, FoldAsciiAndUnicodeApart)
{
    EXPECT_EQ(LowerForm(u" ĐẠO\t"_qs) + u'|' + MixedForm(u" Ab\t"_qs) + u'|' + MixedForm(u"đạo"_qs),
              u"ĐẠo| Ab\t|Đạo"_qs);
    EXPECT_EQ(TestedForm(5, u" straße ā"_qs) + TestedForm(1, u" ĐẠO Z"_qs), u" STRAßE Ā ĐẠo z"_qs);
}

TEST(WordPlaces, TriesThePairFromItsLowerKind)
{
    using Asked = std::vector<QString>; // kind and tested form
    const std::tuple<int, QString, QSet<QString>, std::optional<WordPlace>, Asked> rows[]{
        {2, u"Dog"_qs, {u"1dog"_qs, u"2DOG"_qs}, WordPlace{1, u"Dog"_qs}, {u"1dog"_qs}},
        {1, u"chó"_qs, {u"2CHÓ"_qs}, WordPlace{2, u"chó"_qs}, {u"1chó"_qs, u"2CHÓ"_qs}},
        {2, u"buS"_qs, {u"2BUS"_qs}, WordPlace{1, u"bu"_qs}, {u"1bus"_qs}},
        {1, u"x"_qs, {}, std::nullopt, {u"1x"_qs, u"2X"_qs}},
        {6, u"dhammas"_qs, {u"6DHAMMAS"_qs}, WordPlace{6, u"dhammas"_qs}, {u"5DHAMMAS"_qs, u"6DHAMMAS"_qs}},
        {8, u"path"_qs, {u"7PATH"_qs, u"5PATH"_qs}, WordPlace{7, u"path"_qs}, {u"7PATH"_qs}},
        {3, u"chien"_qs, {u"3CHIEN"_qs}, std::nullopt, {}}};
    for (const auto &[kind, text, words, place, expected] : rows) {
        Asked asked;
        const auto contains = [&, &words = words](int dictionary, const QString &form) {
            asked.push_back(QString::number(dictionary) + form);
            return words.contains(asked.back());
        };
        EXPECT_EQ(FindDictionary(kind, text, contains), place) << text.toStdString();
        EXPECT_EQ(asked, expected) << text.toStdString();
    }
}

TEST(NiggahitaOfWords, IsThatOfTheSpellingThatADictionaryHas)
{
    for (const auto &[words, letter] : {std::pair(QSet<QString>{}, u'ṃ'),
                                        {{u"dhamma"_qs}, u'ṃ'},
                                        {{u"aṁsa"_qs}, u'ṁ'},
                                        {{u"saṃsāra"_qs, u"saŋsāra"_qs, u"taŋ"_qs}, u'ŋ'}})
        EXPECT_EQ(NiggahitaOfWords([&, &words = words](const QString &word) { return words.contains(word); }),
                  QChar(letter));
    int asked = 0;
    NiggahitaOfWords([&](const QString &) { return ++asked > 0; });
    EXPECT_EQ(asked, 3) << "the first words suffice";
}

TEST(WordKeys, TypingIsWhatMakesACharacter)
{
    const std::pair<int, QString> typing[]{{Qt::Key_V, u"\u0016"_qs},
                                           {Qt::Key_Backspace, u"\b"_qs},
                                           {Qt::Key_Delete, u"\u007F"_qs},
                                           {0x1EA0, u"ạ"_qs},
                                           {0, u"ā"_qs},
                                           {0, u"\U00011005"_qs},
                                           {Qt::Key_unknown, u"\u200D"_qs}};
    const std::pair<int, QString> nothing[]{{0, {}},
                                            {0, u"\u0016"_qs},
                                            {Qt::Key_Enter, u"\r"_qs},
                                            {Qt::Key_Insert, {}},
                                            {Qt::Key_Tab, u"\t"_qs},
                                            {Qt::Key_Escape, u"\x1B"_qs}};
    for (const auto &[key, text] : typing)
        EXPECT_EQ(MeaningOfWordKey(key, text), WordKey::Typing) << std::hex << key;
    for (const auto &[key, text] : nothing)
        EXPECT_EQ(MeaningOfWordKey(key, text), WordKey::Nothing) << std::hex << key;
}

TEST(DictionaryCaptions, KeepWhatALanguageDoesNotName)
{
    EXPECT_EQ(DictionaryCaption(8, 0), u"Pāli-Anh"_qs);
    EXPECT_EQ(DictionaryCaption(3, 1), u"French-Vietnamese"_qs);
    EXPECT_EQ(DictionaryCaption(1, 2) + DictionaryCaption(0, 0) + DictionaryCaption(9, 1), QString());
    const std::tuple<int, bool, int, QString> rows[]{{5, false, 0, u"Hiển thị nhiều từ điển"_qs},
                                                     {0, false, 1, u"Multi Dictionary"_qs},
                                                     {5, false, 2, {}},
                                                     {2, true, 7, u"+ Pāli"_qs},
                                                     {6, true, 0, u"+ Anh"_qs},
                                                     {7, true, 1, u"+ Vietnamese"_qs},
                                                     {7, true, 2, {}},
                                                     {4, true, 0, {}}};
    for (const auto &[kind, isMulti, language, caption] : rows)
        EXPECT_EQ(MultiDictionaryCaption(kind, isMulti, language), caption) << kind;
}

} // namespace
