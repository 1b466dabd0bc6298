#include "dictionary/DictionaryWords.h"
#include "lumivara-data/dictionary/BroughtForms.h"
#include "lumivara-data/dictionary/FirstSense.h"
#include "lumivara-data/dictionary/TextForms.h"
#include "lumivara-data/files/DataFile.h"
#include "tools/ToolSupport.h"

using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace {

class WordsVerb : public ToolTest
{
protected:
    void MakeDictionary() const
    {
        Put(u"p.tsv"_s,
            "dhamma\t@dhamma /m/\\n* noun\\n- teaching+what is true\\n- thing\nkāya\tbody <b>or</b> heap\\nmore\n"
            "saṃsagga\t@contact\nGotama\t- a name\nbhikkhu\t- monk\n");
        Put(u"v.tsv"_s, "dhamma\t- giáo pháp\nhoti\t- là\n");
        Run(0, "import dictionary --into P.FDB --quiet --kind 8 p.tsv");
        Run(0, "import dictionary --into P.FDB --quiet --kind 5 v.tsv");
    }
};

TEST_F(WordsVerb, WritesALineForEachWordBehindAForm)
{
    MakeDictionary();
    Put(u"t.txt"_s, "Dhammānaṁ, ‘dhammānaṁ’ kāyasaṁsaggaṁ xyz\nGotamo hoti; hoti. Bhikkhūti’\n");
    EXPECT_THAT(Run(0, "words t.txt --kind 5,8 --dictionary P.FDB --out w.tsv"),
                HasSubstr("8 words of the text, 7 of them found, 6 different forms, 5 forms found"));
    EXPECT_EQ(Bytes(u"w.tsv"_s), "dhammānaṁ\t2\t1\tdhamma\t5\tdhammānaṁ → dhamma, genitive plural\tgiáo pháp\n"
                                 "kāyasaṁsaggaṁ\t1\t1\tkāya\t8\tkāyasaṁsaggaṁ → kāya + saṃsagga\tbody or heap\n"
                                 "kāyasaṁsaggaṁ\t1\t2\tsaṃsagga\t8\tkāyasaṁsaggaṁ → kāya + saṃsagga\tcontact\n"
                                 "gotamo\t1\t1\tGotama\t8\tgotamo → gotama, nominative singular\ta name\n"
                                 "hoti\t2\t1\thoti\t5\thoti → hoti\tlà\n"
                                 "bhikkhūti\t1\t1\tbhikkhu\t8\tbhikkhūti → bhikkhu + iti\tmonk\n");
    Run(0, "words t.txt --kind 8 --dictionary P.FDB --out w.tsv");
    EXPECT_THAT(Bytes(u"w.tsv"_s).toStdString(),
                HasSubstr("\tdhammānaṁ → dhamma, genitive plural\tteaching: what is true\n"));
}

TEST_F(WordsVerb, GivesTheWordsThatADictionaryBringsFirst)
{
    MakeDictionary();
    Put(u"f.tsv"_s, "dhammānaṁ\tkāya\ndhammānaṁ\tdhamma\nmuni’\tGotama\n");
    Run(0, "import dictionary --into P.FDB --quiet --kind 8 --forms f.tsv");
    Put(u"t.txt"_s, "Dhammānaṁ muni dhammassa\n");
    Run(0, "words t.txt --kind 5,8 --dictionary P.FDB --out w.tsv");
    EXPECT_EQ(Bytes(u"w.tsv"_s).toStdString(),
              "dhammānaṁ\t1\t1\tkāya\t8\tdhammānaṁ → kāya\tbody or heap\n"
              "dhammānaṁ\t1\t2\tdhamma\t5\tdhammānaṁ → dhamma, genitive plural\tgiáo pháp\n"
              "muni\t1\t1\tGotama\t8\tmuni → Gotama\ta name\n"
              "dhammassa\t1\t1\tdhamma\t5\tdhammassa → dhamma, genitive singular\tgiáo pháp\n");
}

TEST(BroughtFirst, KeepsWhatGrammarTellsAndEachWordOnce)
{
    const FoundWord dhamma{u"dhamma"_s, 8, u"x → dhamma, genitive plural"_s}, kaya{u"kāya"_s, 8, u"x → kāya"_s};
    EXPECT_EQ(BroughtFirst({{u"Dhamma"_s, 8, u"x → Dhamma"_s}, kaya}, {kaya, dhamma}), (QList{dhamma, kaya}));
    EXPECT_EQ(BroughtFirst({kaya, kaya}, {dhamma}), (QList{kaya, dhamma}));
    QList<FoundWord> many;
    for (int i = 0; i < 9; ++i)
        many.append({QString::number(i), 8, {}});
    EXPECT_EQ(BroughtFirst(many, {dhamma}), many.first(FormFinder::MostWords));
}

TEST_F(WordsVerb, ReadsATextOfTheCanonInTheLanguageOfTheKind)
{
    const QString product = ProductFolder();
    const QStringList files{u"--canon"_s, product + u"KELORA.FDB"_s, u"--dictionary"_s, product + u"PALIDICT.FDB"_s};
    OpenedDatabase canon(product + u"KELORA.FDB"_s);
    const std::string number =
        canon.Text("select first 1 C.ID_VIC from KELORA_CONTENT C where C.CONTENT_VIC_PAL is not null "
                   "and C.CONTENT_VIC_ENG is not null order by C.ID_VIC");
    Run(0, "words --text " + number + " --kind 8,5 --out p.tsv", files);
    const QByteArrayList lines = Bytes(u"p.tsv"_s).split('\n');
    EXPECT_GT(lines.size(), 10);
    for (const QByteArray &line : lines.first(lines.size() - 1))
        EXPECT_EQ(line.count('\t'), 6) << line.toStdString();
    Run(0, "words --text " + number + " --kind 1 --out e.tsv", files);
    EXPECT_NE(Bytes(u"e.tsv"_s), Bytes(u"p.tsv"_s));
    EXPECT_THAT(Run(2, "words --text 987654 --kind 8 --out p.tsv", files), HasSubstr("has no text 987654"));
}

TEST_F(WordsVerb, LeavesNothingBehindWhereItFails)
{
    MakeDictionary();
    const QStringList before = Names();
    Put(u"bad.txt"_s, "dhamma\n\xFF\n");
    EXPECT_THAT(Run(2, "words bad.txt --kind 8 --dictionary P.FDB --out w.tsv"), HasSubstr("bad.txt:2: is not UTF-8"));
    EXPECT_THAT(Run(2, "words p.tsv --kind 8 --dictionary p.tsv --out w.tsv"), HasSubstr("p.tsv"));
    QStringList after = Names();
    EXPECT_TRUE(after.removeOne(u"bad.txt"_s));
    EXPECT_EQ(after, before);
}

TEST_F(WordsVerb, ManyQuestionsHaveTheAnswersOfOne)
{
    MakeDictionary();
    const QString path = Path(u"P.FDB"_s);
    DataFile file;
    file.Open(path);
    {
        DictionaryWords words(file.Database(), file.Transaction());
        QStringList asked{u"dhamma"_s, u"gotama"_s, u"x"_s, u""_s, QString(100, u'a'), u"kāya"_s};
        for (int i = 0; i < 60; ++i)
            asked.append(u"no%1"_s.arg(i));
        asked.append(u"saṃsagga"_s);
        QList<bool> expected(asked.size(), false);
        for (const qsizetype place : {qsizetype(0), qsizetype(1), qsizetype(5), asked.size() - 1})
            expected[place] = true;
        EXPECT_EQ(words.Have(8, asked), expected);
        EXPECT_EQ(words.Have(8, asked), expected) << "remembered";
        EXPECT_EQ(words.Have(5, {u"kāya"_s, u"dhamma"_s}), (QList<bool>{false, true})) << "each kind for itself";
    }
    file.Close();
}

TEST(TextForms, AreRunsOfLettersInLowerCase)
{
    TextForms forms;
    forms.Add(u"‘Evaṁ’ me, evaṁ1sutaṁ — anāgatā’ti; A\u0304KA\u0323 ’’ 12 x-y"_s);
    EXPECT_EQ(forms.All(), (QStringList{u"evaṁ"_s, u"me"_s, u"sutaṁ"_s, u"anāgatā’ti"_s, u"ākạ"_s, u"x"_s, u"y"_s}));
    EXPECT_EQ(forms.Count(u"evaṁ"_s), 2);
    EXPECT_EQ(forms.Total(), 8);
}

TEST(FirstSense, IsThatOfTheFirstSenseLine)
{
    for (const auto &[entry, sense] : {std::pair("@a /m/\n* noun\n- one+two\n- b", "one: two"),
                                       {"@a\nplain <i>text</i>\n=x", "plain text"},
                                       {"@head only", "head only"},
                                       {"* noun\r\n-  &lt;x&gt;\r\n", "<x>"},
                                       {"", ""}})
        EXPECT_EQ(FirstSense(entry).toStdString(), sense);
    EXPECT_EQ(FirstSense("- " + QByteArray(5000, 'x')).size(), 200);
}

} // namespace
