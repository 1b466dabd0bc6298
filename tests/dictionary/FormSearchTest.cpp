#include "dictionary/FormSearch.h"

#include <gmock/gmock.h>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

/// Dictionaries of words as they are written, and of the forms that they bring.
class Source : public FormSource
{
public:
    /// Words parted by ", " for each kind.
    explicit Source(const std::map<int, QString> &words)
    {
        for (const auto &[kind, list] : words) {
            for (const QString &word : list.split(u", "_s))
                m_written[kind].insert(word.toLower(), word);
        }
    }
    QList<bool> Have(int kind, const QStringList &words) override
    {
        ++questions;
        if (fails)
            throw std::runtime_error("no answer");
        QList<bool> answers;
        for (const QString &word : words)
            answers.append(m_written[kind].contains(word));
        return answers;
    }
    QStringList FormsBrought(int kind, const QString &form) override { return brought.value({kind, form}); }
    QString AsWritten(int kind, const QString &word) override { return m_written[kind].value(word, word); }

    QHash<std::pair<int, QString>, QStringList> brought;
    int questions = 0;
    bool fails = false;

private:
    std::map<int, QHash<QString, QString>> m_written;
};

constexpr int Long = 1'000'000; // milliseconds

/// What was found as "word kind", and the first's derivation behind "|".
std::string Told(const FormSearch &search)
{
    QStringList words;
    for (const FoundWord &word : search.Found())
        words.append(word.word + u' ' + QString::number(word.kind));
    const QString how = search.Found().isEmpty() ? QString() : u" | "_s + search.Found().first().derivation;
    return (words.join(u", "_s) + how).toStdString();
}

std::string Found(Source &source, const SoughtForm &sought, bool isListed = false, int language = 1)
{
    FormSearch search(source);
    search.Start(sought, isListed, language);
    EXPECT_TRUE(search.GoOn(Long));
    return Told(search);
}

} // namespace

TEST(FormSearch, FindsTheLongestWordAroundASyllable)
{
    Source source(
        {{6, u"tỳ khưu, tỳ khưu ni, giới, giới bổn, ni, Đại Ca Diếp, Đức Thế Tôn, a b c d e, a b c d e g, Phật"_s},
         {2, u"thế, giới bổn"_s}});
    const std::tuple<QString, Neighbours, bool, std::string> rows[]{
        {u"tỳ"_s, {{u"vị"_s}, {u"khưu"_s, u"kia"_s}}, false, "tỳ khưu 6 | tỳ → tỳ khưu"},
        {u"khưu"_s, {{u"Tỳ"_s}, {u"ni"_s}}, false, "tỳ khưu ni 6, tỳ khưu 6 | khưu → tỳ khưu ni"},
        {u"ni"_s, {{u"tỳ"_s, u"khưu"_s}, {}}, true, "tỳ khưu ni 6 | ni → tỳ khưu ni"},
        {u"giới"_s, {{}, {u"bổn"_s}}, true, "giới bổn 6 | giới → giới bổn"},
        {u"giới"_s, {{u"về"_s}, {u"luật"_s}}, true, ""},
        {u"ca"_s, {{u"ngài"_s, u"Đại"_s}, {u"Diếp"_s}}, false, "Đại Ca Diếp 6 | ca → Đại Ca Diếp"},
        {u"c"_s, {{u"a"_s, u"b"_s}, {u"d"_s, u"e"_s, u"g"_s}}, false, "a b c d e 6 | c → a b c d e"},
        {u"the\u0302\u0301"_s, {{u"Đức"_s}, {u"tôn"_s}}, false, "Đức Thế Tôn 6, thế 2 | thế → Đức Thế Tôn"},
        // without a point
        {u"đại ca diếp"_s, {}, false, "Đại Ca Diếp 6 | đại ca diếp → Đại Ca Diếp"},
        {u"bậc đức thế tôn"_s, {}, false, "Đức Thế Tôn 6 | bậc đức thế tôn → Đức Thế Tôn"},
        {u"PHẬT"_s, {}, false, "Phật 6 | phật → Phật"},
        {u"giới bổn"_s, {}, true, ""},
    };
    for (const auto &[form, around, isListed, told] : rows)
        EXPECT_EQ(Found(source, {form, around, 6}, isListed), told) << form.toStdString();
}

TEST(FormSearch, LooksIntoThePairAndWhatReadsTheSameLanguages)
{
    Source source({{1, u"glass, law"_s},
                   {2, u"luật"_s},
                   {3, u"dhamma"_s},
                   {5, u"dhamma, kāya"_s},
                   {6, u"pháp"_s},
                   {7, u"box"_s},
                   {8, u"dhamma, saṃsagga"_s}});
    const std::tuple<int, QString, std::string> rows[]{
        {5, u"dhammānaṁ"_s, "dhamma 5 | dhammānaṁ → dhamma, genitive plural"},
        {8, u"dhammānaṁ"_s, "dhamma 8 | dhammānaṁ → dhamma, genitive plural"},
        {6, u"Dhammānaṃ"_s, "dhamma 5 | dhammānaṃ → dhamma, genitive plural"},
        {5, u"kāyasaṁsaggaṁ"_s, "kāya 5, saṃsagga 8 | kāyasaṁsaggaṁ → kāya + saṃsagga"},
        {5, u"pháp"_s, "pháp 6 | pháp → pháp"},
        {5, u"luật"_s, "luật 2 | luật → luật"},
        {1, u"glasses"_s, "glass 1 | glasses → glass, plural"},
        {1, u"boxes"_s, "box 7 | boxes → box, plural"},
        {2, u"glasses"_s, "glass 1 | glasses → glass, plural"},
        {3, u"dhamma"_s, ""},
        {0, u"dhammānaṁ"_s, ""},
        {5, u" \t"_s, ""},
    };
    for (const auto &[kind, form, told] : rows)
        EXPECT_EQ(Found(source, {form, {}, kind}), told) << kind << ' ' << form.toStdString();
    EXPECT_EQ(Found(source, {u"dhammānaṁ"_s, {}, 5}, false, 0), "dhamma 5 | dhammānaṁ → dhamma, sở hữu cách số nhiều");
    EXPECT_EQ(Found(source, {u"dhammānaṁ"_s, {}, 5}, true), "");
}

TEST(FormSearch, PutsFormsThatTheDictionaryGivesFirst)
{
    Source source({{5, u"Dhammo, dhamma"_s}, {8, u"dhamma, law"_s}});
    source.brought = {{{5, u"dhammānaṃ"_s}, {u"Dhammo"_s, u"gone"_s, {}}}, {{8, u"dhammānaṃ"_s}, {u"law"_s}}};
    EXPECT_EQ(Found(source, {u"Dhammānaṁ"_s, {}, 5}),
              "Dhammo 5, law 8, dhamma 5 | dhammānaṁ → Dhammo, a form that the dictionary gives");
    EXPECT_EQ(Found(source, {u"dhammānaṁ"_s, {}, 5}, true), "");
}

TEST(FormSearch, TellsSixWordsAtMost)
{
    Source source({{6, u"a b, b c, a b c, b c d, a b c d, b c d e, a b c d e, b"_s}});
    EXPECT_EQ(Found(source, {u"b"_s, {{u"a"_s}, {u"c"_s, u"d"_s, u"e"_s}}, 6}),
              "a b c d e 6, a b c d 6, b c d e 6, a b c 6, b c d 6, a b 6 | b → a b c d e");
}

TEST(FormSearch, FindsTheSameInPieces)
{
    Source source({{5, u"dhamma, kāya, saṃsagga"_s}, {6, u"pháp"_s}});
    const SoughtForm sought{u"kāyasaṁsaggaṁ"_s, {}, 5};
    const std::string whole = Found(source, sought);
    FormSearch search(source);
    search.Start(sought, false, 1);
    int pieces = 1;
    for (int asked = source.questions; !search.GoOn(0); asked = source.questions) {
        ++pieces;
        EXPECT_LE(source.questions, asked + 1);
    }
    EXPECT_GT(pieces, 5);
    EXPECT_EQ(Told(search), whole);
}

TEST(FormSearch, GivesUpWhatWasSoughtBefore)
{
    Source source({{5, u"dhamma, kāya, saṃsagga"_s}});
    FormSearch search(source);
    search.Start({u"kāyasaṁsaggaṁ"_s, {}, 5}, false, 1);
    EXPECT_FALSE(search.GoOn(0));
    search.Start({u"dhammassa"_s, {}, 5}, false, 1);
    EXPECT_TRUE(search.Found().isEmpty());
    EXPECT_TRUE(search.GoOn(Long));
    ASSERT_EQ(search.Found().size(), 1);
    EXPECT_EQ(search.Found().first().word, u"dhamma"_s);
    source.fails = true;
    search.Start({u"kāyassa"_s, {}, 5}, false, 1);
    EXPECT_THROW(search.GoOn(Long), std::runtime_error);
    EXPECT_TRUE(search.GoOn(Long)) << "it is over";
    EXPECT_TRUE(search.Found().isEmpty());
}

TEST(FormSearch, KnowsTheWaysToWriteAName)
{
    for (const auto &[word, way] : {std::pair(u"phật"_s, u"Phật"_s),
                                    {u"đại ca diếp"_s, u"Đại Ca Diếp"_s},
                                    {u"đức phật thích-ca"_s, u"Đức Phật thích-Ca"_s},
                                    {u"bbc"_s, u"BBC"_s}})
        EXPECT_THAT(WithCapitals(word), testing::Contains(way));
    EXPECT_EQ(WithCapitals(u"đại ca"_s),
              (QStringList{u"đại ca"_s, u"Đại ca"_s, u"Đại Ca"_s, u"đại Ca"_s, u"ĐẠI CA"_s}));
    EXPECT_LE(WithCapitals(u"a b c d e g h i k l m n o p q r s t"_s).size(), 40);
}
