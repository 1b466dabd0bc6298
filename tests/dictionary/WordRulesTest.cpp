#include "dictionary/WordRules.h"

#include <gmock/gmock.h>

#include <QSet>

namespace {

TEST(WordForms, FoldAsciiAndUnicodeApart)
{
    for (const auto &[text, lower, mixed, tested] :
         {std::tuple(u"nibbāna"_qs, u"nibbāna"_qs, u"Nibbāna"_qs, u"NIBBĀNA"_qs),
          {u"ĐẠO"_qs, u"ĐẠo"_qs, u"ĐẠO"_qs, u"ĐẠO"_qs},
          {u" Ab\t"_qs, u"ab"_qs, u" Ab\t"_qs, u" AB\t"_qs},
          {u"straße"_qs, u"straße"_qs, u"Straße"_qs, u"STRAßE"_qs},
          {QString(), QString(), QString(), QString()}}) {
        EXPECT_EQ(LowerForm(text), lower);
        EXPECT_EQ(MixedForm(text), mixed);
        EXPECT_EQ(TestedForm(5, text), tested);
    }
    EXPECT_EQ(TestedForm(1, u" ĐẠO Z"_qs), u" ĐẠo z"_qs) << "kind 1 folds ASCII and trims nothing";
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

TEST(WordKeys, TypingIsWhatMakesACharacter)
{
    const auto typing = WordKey::Typing, nothing = WordKey::Nothing;
    for (const auto &[key, text, meaning] : {std::tuple(int(Qt::Key_V), u"\u0016"_qs, typing),
                                             {Qt::Key_Backspace, u"\b"_qs, typing},
                                             {Qt::Key_Delete, u"\u007F"_qs, typing},
                                             {0x1EA0, u"ạ"_qs, typing},
                                             {0, u"ā"_qs, typing},
                                             {0, u""_qs, nothing},
                                             {Qt::Key_Enter, u"\r"_qs, nothing},
                                             {Qt::Key_Insert, u""_qs, nothing},
                                             {Qt::Key_Tab, u"\t"_qs, nothing},
                                             {Qt::Key_Escape, u"\x1B"_qs, nothing},
                                             {Qt::Key_Down, u""_qs, WordKey::NextRow}})
        EXPECT_EQ(MeaningOfWordKey(key, text), meaning) << std::hex << key;
}

TEST(Debounce, IsDueOnceAfterEachRest)
{
    int deltaT = 0;
    for (int tick = 1; tick <= 1000; ++tick)
        EXPECT_EQ(TickDebounce(deltaT), tick == 10) << tick;
    deltaT = 0; // a key was pressed
    for (int tick = 1; tick <= 10; ++tick)
        EXPECT_EQ(TickDebounce(deltaT), tick == 10) << tick;
}

TEST(DictionaryCaptions, KeepWhatALanguageDoesNotName)
{
    EXPECT_EQ(DictionaryCaption(8, 0), u"Pāli-Anh"_qs);
    EXPECT_EQ(DictionaryCaption(3, 1), u"French-Vietnamese"_qs);
    for (const auto &[kind, language] : {std::pair(1, 2), {0, 0}, {9, 1}, {-1, 0}})
        EXPECT_EQ(DictionaryCaption(kind, language), QString()) << kind;
    for (const auto &[kind, isMulti, language, caption] : {std::tuple(5, false, 0, u"Hiển thị nhiều từ điển"_qs),
                                                           {0, false, 1, u"Multi Dictionary"_qs},
                                                           {5, false, 2, u""_qs},
                                                           {2, true, 7, u"+ Pāli"_qs},
                                                           {6, true, 0, u"+ Anh"_qs},
                                                           {7, true, 1, u"+ Vietnamese"_qs},
                                                           {7, true, 2, u""_qs},
                                                           {4, true, 0, u""_qs}})
        EXPECT_EQ(MultiDictionaryCaption(kind, isMulti, language), caption) << kind;
}

} // namespace
