#include "everywhere/Folding.h"

#include "everywhere/FoldedText.h"

#include <QList>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

QString FoldedOf(const QString &text)
{
    return QString::fromUtf8(Folded(text.toUtf8(), Markup::None).bytes);
}

TEST(Folding, KnowsNeitherCaseNorMarks)
{
    const std::pair<QString, QString> rows[]{
        {u"ĀāĪīŪū Ññ Ṅṅ Ṇṇ Ṭṭ Ḍḍ Ḷḷ"_s, u"aaiiuu nn nn nn tt dd ll"_s},
        {u"ṁ ṃ Ṁ m"_s, u"m m m m"_s},
        {u"Đđ Tỳ khưu ƯỚC ở Ặ"_s, u"dd ty khuu uoc o a"_s},
        {u"a\u0304 n\u0303 o\u031B\u0309"_s, u"a n o"_s}, // decomposed
        {u"o\u0309\u031B u\u0323\u0304"_s, u"o u"_s},     // in any order
        {u"İ ı Ł ø Ħ ŧ"_s, u"i i l o h t"_s},
        {u"ΣΑΣ σας"_s, u"σασ σασ"_s},
        {u"ß"_s, u"ß"_s},
        {u"\U00010400 \U0001D11E"_s, u"\U00010428 \U0001D11E"_s},
        {u"한"_s, u"\u1112\u1161\u11AB"_s},
        {u"क़"_s, u"क\u093C"_s}, // vowels and dots of Indic scripts are letters
    };
    for (const auto &[text, folded] : rows) {
        EXPECT_EQ(FoldedOf(text), folded);
        EXPECT_EQ(FoldedOf(text.normalized(QString::NormalizationForm_C)), folded);
        EXPECT_EQ(FoldedOf(text.normalized(QString::NormalizationForm_D)), folded);
    }
}

// What the search takes for granted: it compares bytes, and a letter is never found in a part of another one.
TEST(Folding, GivesEveryLetterItsOwnBytes)
{
    for (char32_t letter = 1; letter < 0x30000; ++letter) {
        if (QChar::isSurrogate(letter))
            continue;
        const FoldedLetter &folded = FoldedLetterOf(letter);
        const QString own = QString::fromUtf8(folded.bytes.data(), folded.size);
        ASSERT_EQ(own, ExactForm(QString::fromUcs4(&letter, 1), false, false)) << static_cast<unsigned>(letter);
        const QList<uint> letters = own.toUcs4();
        for (qsizetype i = 1; i < letters.size(); ++i) {
            ASSERT_TRUE(ContinuesLetter(letters[i])) << static_cast<unsigned>(letter);
        }
    }
}

TEST(Folding, KeepsWhatIsAskedFor)
{
    const QString text = u"Đa\u0304 Ā"_s;
    EXPECT_EQ(ExactForm(text, false, false), u"da a"_s);
    EXPECT_EQ(ExactForm(text, true, false), u"Da A"_s);
    EXPECT_EQ(ExactForm(text, false, true), u"đa\u0304 a\u0304"_s);
    EXPECT_EQ(ExactForm(text, true, true), u"Đa\u0304 A\u0304"_s);
    EXPECT_EQ(ExactForm(u"Plain"_s, false, true), u"plain"_s);
    EXPECT_EQ(ExactForm(u"Plain"_s, true, false), u"Plain"_s);
}

} // namespace
