#include "dictionary/WordRules.h"

#include <gmock/gmock.h>

#include <QSet>

namespace {

TEST(WordForms, FoldAsciiAndUnicodeApart)
{
    const std::tuple<QString, QString, QString, QString> cases[]{
        {u"nibbāna"_qs, u"nibbāna"_qs, u"Nibbāna"_qs, u"NIBBĀNA"_qs},
        {u"Nibbāna"_qs, u"nibbāna"_qs, u"Nibbāna"_qs, u"NIBBĀNA"_qs},
        {u"đạo"_qs, u"đạo"_qs, u"Đạo"_qs, u"ĐẠO"_qs},
        {u"ĐẠO"_qs, u"ĐẠo"_qs, u"ĐẠO"_qs, u"ĐẠO"_qs},
        {u" Ab\t"_qs, u"ab"_qs, u" Ab\t"_qs, u" AB\t"_qs},
        {u"straße"_qs, u"straße"_qs, u"Straße"_qs, u"STRAßE"_qs},
        {QString(), QString(), QString(), QString()},
    };
    for (const auto &[text, lower, mixed, tested] : cases) {
        EXPECT_EQ(LowerForm(text), lower);
        EXPECT_EQ(MixedForm(text), mixed);
        EXPECT_EQ(TestedForm(5, text), tested);
    }
    EXPECT_EQ(TestedForm(1, u" ĐẠO Z"_qs), u" ĐẠo z"_qs) << "kind 1 folds ASCII and trims nothing";
}

TEST(WordPlaces, TriesThePairFromItsLowerKind)
{
    const struct
    {
        int kind;
        QString text;
        QSet<QString> words; ///< kind and tested form
        std::optional<WordPlace> place;
        std::vector<QString> asked;
    } cases[]{
        {2, u"Dog"_qs, {u"1dog"_qs, u"2DOG"_qs}, WordPlace{1, u"Dog"_qs}, {u"1dog"_qs}},
        {1, u"chó"_qs, {u"2CHÓ"_qs}, WordPlace{2, u"chó"_qs}, {u"1chó"_qs, u"2CHÓ"_qs}},
        {2, u"buS"_qs, {u"2BUS"_qs}, WordPlace{1, u"bu"_qs}, {u"1bus"_qs}},
        {1, u"x"_qs, {}, std::nullopt, {u"1x"_qs, u"2X"_qs}},
        {6, u"dhammas"_qs, {u"6DHAMMAS"_qs}, WordPlace{6, u"dhammas"_qs}, {u"5DHAMMAS"_qs, u"6DHAMMAS"_qs}},
        {8, u"path"_qs, {u"7PATH"_qs, u"5PATH"_qs}, WordPlace{7, u"path"_qs}, {u"7PATH"_qs}},
        {7, QString(), {}, std::nullopt, {u"7"_qs, u"8"_qs}},
        {0, u"dog"_qs, {u"1dog"_qs}, std::nullopt, {}},
        {3, u"chien"_qs, {u"3CHIEN"_qs}, std::nullopt, {}},
    };
    for (const auto &test : cases) {
        std::vector<QString> asked;
        const auto contains = [&](int kind, const QString &form) {
            asked.push_back(QString::number(kind) + form);
            return test.words.contains(asked.back());
        };
        EXPECT_EQ(FindDictionary(test.kind, test.text, contains), test.place) << test.text.toStdString();
        EXPECT_EQ(asked, test.asked) << test.text.toStdString();
    }
}

TEST(WordKeys, TypingIsWhatMakesACharacter)
{
    for (const auto &[key, text] : {std::pair<int, QString>{Qt::Key_A, u"a"_qs},
                                    {Qt::Key_V, u"\u0016"_qs},
                                    {Qt::Key_Space, u" "_qs},
                                    {Qt::Key_Backspace, u"\b"_qs},
                                    {Qt::Key_Delete, u"\u007F"_qs},
                                    {0x1EA0, u"ạ"_qs},
                                    {0, u"ā"_qs},
                                    {Qt::Key_unknown, u"ậ"_qs}})
        EXPECT_EQ(MeaningOfWordKey(key, text), WordKey::Typing) << std::hex << key;
    for (const auto &[key, text] : {std::pair<int, QString>{0, {}},
                                    {Qt::Key_Return, u"\r"_qs},
                                    {Qt::Key_Enter, u"\r"_qs},
                                    {Qt::Key_Insert, {}},
                                    {Qt::Key_F5, {}},
                                    {Qt::Key_Shift, {}},
                                    {Qt::Key_Tab, u"\t"_qs},
                                    {Qt::Key_Escape, u"\x1B"_qs},
                                    {Qt::Key_Left, {}}})
        EXPECT_EQ(MeaningOfWordKey(key, text), WordKey::Nothing) << std::hex << key;
    EXPECT_EQ(MeaningOfWordKey(Qt::Key_Down, {}), WordKey::NextRow);
    EXPECT_EQ(MeaningOfWordKey(Qt::Key_Up, {}), WordKey::PriorRow);
    EXPECT_EQ(MeaningOfWordKey(Qt::Key_PageDown, {}), WordKey::NextPage);
    EXPECT_EQ(MeaningOfWordKey(Qt::Key_PageUp, {}), WordKey::PriorPage);
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

    const std::tuple<int, bool, int, QString> cases[]{
        {5, false, 0, u"Hiển thị nhiều từ điển"_qs},
        {0, false, 1, u"Multi Dictionary"_qs},
        {5, false, 2, QString()},
        {2, true, 7, u"+ Pāli"_qs},
        {6, true, 0, u"+ Anh"_qs},
        {7, true, 1, u"+ Vietnamese"_qs},
        {7, true, 2, QString()},
        {4, true, 0, QString()},
        {0, true, 0, QString()},
    };
    for (const auto &[kind, isMulti, language, caption] : cases)
        EXPECT_EQ(MultiDictionaryCaption(kind, isMulti, language), caption) << kind;
}

} // namespace
