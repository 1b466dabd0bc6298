#include "dictionary/FormFinder.h"
#include "dictionary/EnglishReadings.h"

#include <gmock/gmock.h>

#include <QSet>

using namespace Qt::StringLiterals;

namespace {

/// Dictionaries that are sets; counts what it is asked.
class Words : public WordTest
{
public:
    /// Words parted by ", " for each kind.
    explicit Words(const std::map<int, QString> &words)
    {
        for (const auto &[kind, list] : words) {
            for (const QString &word : list.simplified().split(u", "_s))
                m_words[kind].insert(word);
        }
    }
    QList<bool> Have(int kind, const QStringList &words) override
    {
        QList<bool> answers;
        for (const QString &word : words)
            answers.append(m_words[kind].contains(word));
        asked += words.size();
        return answers;
    }
    qsizetype asked = 0;

private:
    std::map<int, QSet<QString>> m_words;
};

/// The words of a kind as "word kind", the first with its derivation.
std::string Found(Words &words, const QString &form, const QList<int> &kinds = {8})
{
    FormFinder finder(words);
    QStringList told;
    for (const FoundWord &word : finder.WordsBehind(form, kinds))
        told.append(word.word + u' ' + QString::number(word.kind));
    return told.join(u", "_s).toStdString();
}

std::string Derivation(Words &words, const QString &form, int language = 1)
{
    FormFinder finder(words, language);
    const QList<FoundWord> found = finder.WordsBehind(form, {8});
    return found.isEmpty() ? std::string() : found.first().derivation.toStdString();
}

const QString Lemmas =
    u"dhamma, kāya, saṃsagga, bhikkhu, āpatti, adhikaraṇa, khandha, dukkaṭa, pubbe, eva, assa, atthi, añña, anāgata, "
    u"iti, "
    u"samaṇa, pācittiya, hoti, karoti, kamma, na, ca, api, so, ahaṃ, etad, avoca, vadati, tena, upasaṅkamati, khamati, "
    u"codeti, kāma, saññā, vuttha, parivāsa, yathā, sammā, gāma, rāja, putta, vinaya, asi, mahā, vana, "
    u"kāla, cakkhu, indriya, surā, meraya, majja, pamāda, ṭhāna, udāna"_s;

TEST(PaliForms, ComeBackToTheirWordsWithADerivation)
{
    Words words({{8, Lemmas}});
    for (const auto &[form, derivation] : {
             std::pair(u"dhammānaṁ"_s, "dhammānaṁ → dhamma, genitive plural"),
             {u"Dhammā"_s, "dhammā → dhamma, nominative plural"},
             {u"dhamma"_s, "dhamma → dhamma"},
             {u"hotī"_s, "hotī → hoti"},
             {u"pācittiyan"_s, "pācittiyan → pācittiya, accusative singular"},
             {u"kāyasaṁsaggaṁ"_s, "kāyasaṁsaggaṁ → kāya + saṃsagga"},
             {u"dukkaṭāpattikkhandhena"_s, "dukkaṭāpattikkhandhena → dukkaṭa + āpatti + khandha"},
             {u"āpattādhikaraṇañca"_s, "āpattādhikaraṇañca → āpatti + adhikaraṇa + ca"},
             {u"pubbevassa"_s, "pubbevassa → pubbe + eva + assa"},
             {u"atthaññe"_s, "atthaññe → atthi + añña"},
             {u"anāgatā’ti"_s, "anāgatā’ti → anāgata + iti"},
             {u"kamman’ti"_s, "kamman’ti → kamma + iti"},
             {u"hotīti"_s, "hotīti → hoti + iti"},
             {u"assamaṇosi"_s, "assamaṇosi → a + samaṇa + asi"},
             {u"tenupasaṅkami"_s, "tenupasaṅkami → tena + upasaṅkamati"},
             {u"nakkhamati"_s, "nakkhamati → na + khamati"},
             {u"etadavoca"_s, "etadavoca → etad + avoca"},
             {u"nāhaṁ"_s, "nāhaṁ → na + ahaṃ"},
             {u"codetukāmena"_s, "codetukāmena → codeti + kāma"},
             {u"saññakkhandho"_s, "saññakkhandho → saññā + khandha"},
             {u"acodetvā"_s, "acodetvā → a + codeti"},
             {u"rājaputtassa"_s, "rājaputtassa → rāja + putta"},
             {u"kālamakāsi"_s, "kālamakāsi → kāla + karoti"},
             {u"atthāpatti"_s, "atthāpatti → atthi + āpatti"},
             {u"cakkhundriyaṁ"_s, "cakkhundriyaṁ → cakkhu + indriya"},
             {u"surāmerayamajjapamādaṭṭhānā"_s, "surāmerayamajjapamādaṭṭhānā → surā + meraya + majja + pamāda + ṭhāna"},
         })
        EXPECT_EQ(Derivation(words, form), derivation);
    EXPECT_EQ(Derivation(words, u"dhammānaṁ"_s, 0), "dhammānaṁ → dhamma, sở hữu cách số nhiều");
}

TEST(PaliForms, AreFoundHoweverDictionariesWriteHeadwords)
{
    const struct
    {
        QString form, words;
        std::string found;
    } rows[]{
        {u"evaṁ"_s, u"evaṃ"_s, "evaṃ 8"},
        {u"evaṃ"_s, u"evaŋ"_s, "evaŋ 8"},
        {u"saṅghassa"_s, u"saṃgha"_s, "saṃgha 8"},
        {u"saṁghassa"_s, u"saṅgha"_s, "saṅgha 8"},
        {u"byañjanena"_s, u"vyañjana"_s, "vyañjana 8"},
        {u"eḷakassa"_s, u"elaka"_s, "elaka 8"},
        {u"dhammassa"_s, u"dhamma 1, kata 1"_s, "dhamma 1 8"},
        {u"rañño"_s, u"rājan"_s, "rājan 8"},
        {u"satthārā"_s, u"satthu"_s, "satthu 8"},
        {u"guṇavatā"_s, u"guṇavantu"_s, "guṇavantu 8"},
        {u"karonti"_s, u"kar"_s, "kar 8"},
    };
    for (const auto &row : rows) {
        Words words({{8, row.words}});
        EXPECT_EQ(Found(words, row.form), row.found) << row.form.toStdString();
    }
}

TEST(PaliForms, AreRankedByHowLikelyTheyAre)
{
    Words words({{5, u"dhamma, mati"_s},
                 {8, u"dhamma, kammā, kamma, uda, udāna, sappati, sappi, te, ta, tumha"_s},
                 {1, u"te"_s}});
    EXPECT_EQ(Found(words, u"kamme"_s), "kamma 8, kammā 8") << "frequent endings first";
    EXPECT_EQ(Found(words, u"udānaṁ"_s), "udāna 8, uda 8") << "long words first";
    EXPECT_EQ(Found(words, u"dhammesu"_s, {5, 8}), "dhamma 5") << "the text's own kind first";
    EXPECT_EQ(Found(words, u"dhammesu"_s, {8, 5}), "dhamma 8");
    EXPECT_EQ(Found(words, u"te"_s), "te 8, ta 8, tumha 8") << "itself first";
    EXPECT_EQ(Found(words, u"te"_s, {1, 8}).substr(0, 10), "te 1, ta 8") << "each kind by the grammar of its language";
    EXPECT_EQ(Found(words, u"dhammakammasappissa"_s), "dhamma 8, kamma 8, sappi 8");
}

TEST(PaliForms, ArePiecesOnlyOfRealWords)
{
    Words words({{8, Lemmas}});
    for (const QString &form : {u""_s, u"’"_s, u"x"_s, u"gāpudharo"_s, u"kāyadhu"_s, u"vanapo"_s, u"tapisemo"_s,
                                u"nasudero"_s, u"人間"_s, u"🙂"_s, u"1234"_s})
        EXPECT_EQ(Found(words, form), "") << form.toStdString();
}

TEST(PaliForms, AreBoundedInQuestionsAndAnswers)
{
    Words words({{8, Lemmas + u", a, ā, ka, kā, ta, ti, i, tā, at, āt"_s}});
    quint32 seed = 1;
    const auto next = [&](quint32 most) { return (seed = seed * 1664525 + 1013904223) / 65536 % most; };
    const QString letters = u"aāiīuūeokgṅcjñṭḍṇtdnpbmyrlvshḷṃ’aaaiiu"_s;
    QStringList forms{QString(80, u'a'), u"ta"_s.repeated(40), u"kāya"_s.repeated(20), QString(500, u'k')};
    for (int i = 0; i < 300; ++i) {
        QString form;
        for (quint32 size = next(40); size > 0; --size)
            form += letters[next(quint32(letters.size()))];
        forms.append(form);
    }
    for (const QString &form : forms) {
        words.asked = 0;
        FormFinder finder(words);
        EXPECT_LE(finder.WordsBehind(form, {8}).size(), FormFinder::MostWords);
        EXPECT_LT(words.asked, 8000) << form.toStdString();
    }
}

TEST(EnglishForms, RegularAndIrregular)
{
    Words words(
        {{1,
          u"dog, city, box, leaf, stop, make, lie, happy, good, write, go, child, do, monk, quick, basic, man, bus, be"_s}});
    for (const auto &[form, word] : {std::pair(u"Dogs"_s, u"dog, plural"_s),
                                     {u"cities"_s, u"city, plural"_s},
                                     {u"boxes"_s, u"box, plural"_s},
                                     {u"leaves"_s, u"leaf, plural"_s},
                                     {u"stopped"_s, u"stop, past"_s},
                                     {u"making"_s, u"make, present participle"_s},
                                     {u"lying"_s, u"lie, present participle"_s},
                                     {u"happier"_s, u"happy, comparative"_s},
                                     {u"happily"_s, u"happy, adverb"_s},
                                     {u"best"_s, u"good, superlative"_s},
                                     {u"written"_s, u"write, past participle"_s},
                                     {u"went"_s, u"go, past"_s},
                                     {u"children"_s, u"child, plural"_s},
                                     {u"don’t"_s, u"do, contraction"_s},
                                     {u"monk's"_s, u"monk, possessive"_s},
                                     {u"quickly"_s, u"quick, adverb"_s},
                                     {u"basically"_s, u"basic, adverb"_s},
                                     {u"were"_s, u"be, past"_s},
                                     {u"bus"_s, u"bus"_s}}) {
        FormFinder finder(words);
        const QList<FoundWord> found = finder.WordsBehind(form, {1});
        EXPECT_EQ(found.value(0).derivation.section(u" → "_s, 1).toStdString(), word.toStdString());
    }
}

TEST(VietnameseForms, AreTheLongestRunAroundTheSyllable)
{
    Words words({{6, u"phật, phật pháp, đức phật, cửa phật pháp tăng ni, pháp"_s}});
    FormFinder finder(words);
    const auto around = [&](const QString &text, qsizetype index) {
        QStringList told;
        for (const FoundWord &word : finder.WordsAround(text.split(u' '), index, {6}))
            told.append(word.word);
        return told.join(u", "_s).toStdString();
    };
    EXPECT_EQ(around(u"Đức Phật, pháp"_s, 1), "đức phật, phật pháp, phật");
    EXPECT_EQ(around(u"ở cửa Phật Pháp Tăng Ni ấy"_s, 2), "cửa phật pháp tăng ni, phật pháp, phật");
    EXPECT_EQ(around(u"xa"_s, 0) + around(u"xa"_s, 5) + around({}, 0), "");
    EXPECT_EQ(SyllableRuns({u"a"_s, u"B"_s, u"c"_s}, 1), (QStringList{u"a b c"_s, u"a b"_s, u"b c"_s, u"b"_s}));
}

TEST(Kinds, OfOneLanguageStandTogether)
{
    const auto kinds = [](std::initializer_list<int> list) { return QList<int>(list); };
    EXPECT_EQ(KindsOfSameLanguage(5), kinds({5, 8}));
    EXPECT_EQ(KindsOfSameLanguage(8), kinds({8, 5}));
    EXPECT_EQ(KindsOfSameLanguage(7), kinds({7, 1}));
    EXPECT_EQ(KindsOfSameLanguage(6), kinds({6, 2, 4}));
    EXPECT_EQ(KindsOfSameLanguage(3), kinds({3}));
    EXPECT_EQ(KindsOfSameLanguage(0), kinds({0}));
}

} // namespace
