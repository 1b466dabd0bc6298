#include "dictionary/WordRules.h"

#include <gmock/gmock.h>

#include <QSet>

namespace {

using testing::ElementsAre;

TEST(WordForms, FoldAsciiAndUnicodeApart)
{
    struct Case
    {
        QString text, lower, mixed, tested;
    };
    for (const Case &test : {
             Case{u"nibbāna"_qs, u"nibbāna"_qs, u"Nibbāna"_qs, u"NIBBĀNA"_qs},
             Case{u"Nibbāna"_qs, u"nibbāna"_qs, u"Nibbāna"_qs, u"NIBBĀNA"_qs},
             Case{u"đạo"_qs, u"đạo"_qs, u"Đạo"_qs, u"ĐẠO"_qs},
             Case{u"ĐẠO"_qs, u"ĐẠo"_qs, u"ĐẠO"_qs, u"ĐẠO"_qs},
             Case{u" Ab\t"_qs, u"ab"_qs, u" Ab\t"_qs, u" AB\t"_qs},
             Case{u"straße"_qs, u"straße"_qs, u"Straße"_qs, u"STRAßE"_qs},
             Case{QString(), QString(), QString(), QString()},
         }) {
        EXPECT_EQ(LowerForm(test.text), test.lower);
        EXPECT_EQ(MixedForm(test.text), test.mixed);
        EXPECT_EQ(TestedForm(5, test.text), test.tested);
    }
    EXPECT_EQ(TestedForm(1, u" ĐẠO Z"_qs), u" ĐẠo z"_qs) << "kind 1 folds ASCII and trims nothing";
}

TEST(WordPlaces, TriesThePairFromItsLowerKind)
{
    struct Case
    {
        int kind;
        QString text;
        QSet<QString> words; ///< kind and tested form
        std::optional<WordPlace> place;
        std::vector<QString> asked;
    };
    for (const Case &test : {
             Case{2, u"Dog"_qs, {u"1dog"_qs, u"2DOG"_qs}, WordPlace{1, u"Dog"_qs}, {u"1dog"_qs}},
             Case{1, u"chó"_qs, {u"2CHÓ"_qs}, WordPlace{2, u"chó"_qs}, {u"1chó"_qs, u"2CHÓ"_qs}},
             Case{2, u"buS"_qs, {u"2BUS"_qs}, WordPlace{1, u"bu"_qs}, {u"1bus"_qs}},
             Case{1, u"x"_qs, {}, std::nullopt, {u"1x"_qs, u"2X"_qs}},
             Case{6, u"dhammas"_qs, {u"6DHAMMAS"_qs}, WordPlace{6, u"dhammas"_qs}, {u"5DHAMMAS"_qs, u"6DHAMMAS"_qs}},
             Case{8, u"path"_qs, {u"7PATH"_qs, u"5PATH"_qs}, WordPlace{7, u"path"_qs}, {u"7PATH"_qs}},
             Case{7, QString(), {}, std::nullopt, {u"7"_qs, u"8"_qs}},
             Case{0, u"dog"_qs, {u"1dog"_qs}, std::nullopt, {}},
             Case{3, u"chien"_qs, {u"3CHIEN"_qs}, std::nullopt, {}},
         }) {
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
    struct Case
    {
        int key;
        QString text;
        WordKey meaning;
    };
    for (const Case &test : {
             Case{Qt::Key_A, u"a"_qs, WordKey::Typing},
             Case{Qt::Key_V, u"\u0016"_qs, WordKey::Typing},
             Case{Qt::Key_0, u"0"_qs, WordKey::Typing},
             Case{Qt::Key_Slash, u"/"_qs, WordKey::Typing},
             Case{Qt::Key_Space, u" "_qs, WordKey::Typing},
             Case{Qt::Key_Backspace, u"\b"_qs, WordKey::Typing},
             Case{Qt::Key_Delete, u"\u007F"_qs, WordKey::Typing},
             Case{0x1EA0, u"ạ"_qs, WordKey::Typing},
             Case{0, u"ā"_qs, WordKey::Typing},
             Case{Qt::Key_unknown, u"ậ"_qs, WordKey::Typing},
             Case{0, QString(), WordKey::Nothing},
             Case{Qt::Key_Return, u"\r"_qs, WordKey::Nothing},
             Case{Qt::Key_Enter, u"\r"_qs, WordKey::Nothing},
             Case{Qt::Key_Insert, QString(), WordKey::Nothing},
             Case{Qt::Key_F5, QString(), WordKey::Nothing},
             Case{Qt::Key_Shift, QString(), WordKey::Nothing},
             Case{Qt::Key_Tab, u"\t"_qs, WordKey::Nothing},
             Case{Qt::Key_Escape, u"\x1B"_qs, WordKey::Nothing},
             Case{Qt::Key_Left, QString(), WordKey::Nothing},
             Case{Qt::Key_Down, QString(), WordKey::NextRow},
             Case{Qt::Key_Up, QString(), WordKey::PriorRow},
             Case{Qt::Key_PageDown, QString(), WordKey::NextPage},
             Case{Qt::Key_PageUp, QString(), WordKey::PriorPage},
         })
        EXPECT_EQ(MeaningOfWordKey(test.key, test.text), test.meaning) << std::hex << test.key;
}

TEST(Debounce, IsDueOnceAfterEachRest)
{
    const auto dueTicks = [](int &deltaT, int ticks) {
        std::vector<int> due;
        for (int tick = 1; tick <= ticks; ++tick) {
            if (TickDebounce(deltaT))
                due.push_back(tick);
        }
        return due;
    };
    int deltaT = 0;
    EXPECT_THAT(dueTicks(deltaT, 1000), ElementsAre(10));
    deltaT = 0;
    EXPECT_THAT(dueTicks(deltaT, 9), ElementsAre());
    deltaT = 0;
    EXPECT_THAT(dueTicks(deltaT, 100), ElementsAre(10));
}

TEST(DictionaryCaptions, KeepWhatALanguageDoesNotName)
{
    EXPECT_EQ(DictionaryCaption(8, 0), u"Pāli-Anh"_qs);
    EXPECT_EQ(DictionaryCaption(3, 1), u"French-Vietnamese"_qs);
    for (const auto &[kind, language] : {std::pair(1, 2), {0, 0}, {9, 1}, {-1, 0}})
        EXPECT_EQ(DictionaryCaption(kind, language), QString()) << kind;

    struct Case
    {
        int kind;
        bool isMulti;
        int language;
        QString caption;
    };
    for (const Case &test : {
             Case{5, false, 0, u"Hiển thị nhiều từ điển"_qs},
             Case{0, false, 1, u"Multi Dictionary"_qs},
             Case{5, false, 2, QString()},
             Case{2, true, 7, u"+ Pāli"_qs},
             Case{6, true, 0, u"+ Anh"_qs},
             Case{7, true, 1, u"+ Vietnamese"_qs},
             Case{7, true, 2, QString()},
             Case{4, true, 0, QString()},
             Case{0, true, 0, QString()},
         }) {
        const QString caption = MultiDictionaryCaption(test.kind, test.isMulti, test.language);
        EXPECT_EQ(caption, test.caption);
        EXPECT_EQ(caption.isNull(), test.caption.isNull());
    }
}

} // namespace
