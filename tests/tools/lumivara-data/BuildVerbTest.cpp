#include "tools/ToolSupport.h"

#include <QDateTime>

#include <array>

using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace {

const QString Canon = u"kết quả/KELORA.FDB"_s, Marks = u"kết quả/TARUNECLIENT.FDB"_s;
const std::string CanonRows = "select * from KELORA_CONTENT";

/// Sources of a canon with two groups and two texts, and of a dictionary with one word; an empty folder for the
/// databases.
class BuildVerb : public ToolTest
{
protected:
    void SetUp() override
    {
        Put(u"data/canon/groups.csv"_s, "ID_VIT,P_ID_VIT,NAME_VIT_VIE,NAME_VIT_PAL,NAME_VIT_ENG\n"
                                        "1,-1,Gốc,Mūlaṃ,Root\n"
                                        "2,1,Nhánh,Sākhā,\n");
        Put(u"data/canon/texts.csv"_s, "NUMBER_VIC,ID_VIC,ID_VIT,NAME_VIC_PAL,NAME_VIC_VIE,NAME_VIC_ENG,WITHOUT\n"
                                       "1,1101,2,Paṭhamaṃ,Thứ nhất,\"First, and only\",\n"
                                       "2,1201,2,Dutiyaṃ,Thứ nhì,,pal\n");
        QByteArray formulas;
        for (const char *form : {"label", "opening", "story", "rule", "analysis", "closing"})
            formulas += QByteArray("@form ") + form + "\n{title} " + form + " | {title} " + form + " vi | {title} en\n";
        Put(u"data/canon/formulas.txt"_s, formulas + "@form heads\na | b | c\na | b | c\na | b | c\na | b | c\n");
        Put(u"data/canon/passages/own.txt"_s, "@text 1101\nĀdi | Đầu | Start\n");
        Put(u"data/dictionary/pali.txt"_s, "dictionary 5\n% ādi\n@ādi\n- đầu\n");
        QDir().mkpath(Path(u"kết quả"_s));
        m_environment = {u"LANG=C"_s}; // paths outside ASCII are taken in any locale
    }
    std::string Build(const std::string &more = "", int exitCode = 0) const
    {
        return Run(exitCode, "build --data data " + more, {u"--out"_s, u"kết quả"_s});
    }
};

TEST_F(BuildVerb, MakesTheThreeFilesAndNothingElse)
{
    EXPECT_EQ(Build("dictionary"), "PALIDICT.FDB: built\n") << "only the kinds that are named";
    EXPECT_EQ(Build("--force"), "KELORA.FDB: built\nPALIDICT.FDB: built\nTARUNECLIENT.FDB: built\n");
    const QStringList files{u"KELORA.FDB"_s, u"PALIDICT.FDB"_s, u"TARUNECLIENT.FDB"_s};
    EXPECT_EQ(QDir(Path(u"kết quả"_s)).entryList(QDir::Files | QDir::Hidden), files);
    for (const QString &name : files)
        EXPECT_EQ(Ask(u"kết quả/"_s + name, "select MON$READ_ONLY from MON$DATABASE"), name == files[2] ? "0" : "1")
            << "what a reader writes is not read-only";
    const std::string first = Ask(Canon, CanonRows);
    Build("--force");
    EXPECT_EQ(Ask(Canon, CanonRows), first) << "in the same order";
    // Without an English title there is no English page; the Pāli one is left out by the sources.
    EXPECT_EQ(Ask(Canon, "select NAME_VIC_ENG, iif(position('>Start<' in CONTENT_VIC_ENG) > 0, 1, 0), "
                         "octet_length(CONTENT_VIC_PAL), octet_length(CONTENT_VIC_ENG) from KELORA_CONTENT"),
              "First, and only,1,2582,2572|null,0,null,null");
}

TEST_F(BuildVerb, GivesTheSameBytesForOneDateOfTheSources)
{
    m_environment += u"SOURCE_DATE_EPOCH=1795694405"_s;
    const QStringList files{Canon, u"kết quả/PALIDICT.FDB"_s, Marks};
    std::array<QByteArray, 3> before;
    Build("--force");
    for (int i = 0; i < 3; ++i)
        before[i] = Bytes(files[i]);
    QFile::remove(Path(Marks));
    Build("--force");
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(Bytes(files[i]) == before[i]) << files[i].toStdString();
        EXPECT_EQ(Ask(files[i], "select cast(MON$CREATION_DATE as varchar(30)) from MON$DATABASE"),
                  "2026-11-26 12:00:05.0000");
    }
    EXPECT_EQ(Ask(Canon, "select count(*) from KELORA_CONTENT"), "2");
}

TEST_F(BuildVerb, NeverTouchesTheReadersFile)
{
    Build();
    OpenedDatabase(Path(Marks)).Execute(u"insert into SUTTA_TEXT_FOCUS (ID_FOC, NAME_FOC) values (1, 'của tôi')"_s);
    EXPECT_THAT(Build("--force"), HasSubstr("TARUNECLIENT.FDB: kept"));
    EXPECT_EQ(Ask(Marks, "select NAME_FOC from SUTTA_TEXT_FOCUS"), "của tôi");
    // Whatever stands there is the reader's, even if it is no database.
    Put(Marks, "notes");
    Build("--force");
    EXPECT_EQ(Bytes(Marks), "notes");
}

TEST_F(BuildVerb, BuildsAgainOnlyWhenSourcesAreNewerAndSound)
{
    Build();
    EXPECT_THAT(Build(), HasSubstr("KELORA.FDB: up to date\nPALIDICT.FDB: up to date"));
    const QString own = u"data/canon/passages/own.txt"_s;
    Put(own, "@text 1101\nMới | Mới | New\n");
    QFile source(Path(own));
    EXPECT_TRUE(source.open(QIODevice::Append) &&
                source.setFileTime(QDateTime::currentDateTime().addSecs(9), QFileDevice::FileModificationTime));
    EXPECT_THAT(Build(), HasSubstr("KELORA.FDB: built\nPALIDICT.FDB: up to date"));
    EXPECT_THAT(Ask(Canon, CanonRows), HasSubstr(">New<"));
    const QByteArray before = Bytes(Canon);
    Put(own, "@text 1101\n@picture none.svg x | y\n");
    EXPECT_THAT(Build("--force canon", 2), HasSubstr("there is no picture \"none.svg\""));
    EXPECT_EQ(Bytes(Canon), before);
}

TEST_F(BuildVerb, TheDictionaryAnswersByItsThreeProcedures)
{
    Put(u"data/dictionary/pali.txt"_s,
        "dictionary 5\n% sati\n@sati\n% Saṃsāra\n@S\n% saka\n@saka\n% gāma\n@gāma\n- làng\n");
    Put(u"data/dictionary/english.txt"_s, "dictionary 8\n% gāma\n@gāma\n- village\n");
    Put(u"data/dictionary/anh.txt"_s, "dictionary 1\n% Ānanda\n@A\n% lamp\n@lamp\n");
    Put(u"data/dictionary/forms.txt"_s, "forms 5 8\ngāma: gāmassa\n");
    Build("dictionary");
    for (const auto &[call, answer] : std::initializer_list<std::pair<std::string, std::string>>{
             {"SP_GET_LIST_WORDS(5)", "gāma,5|gāmassa,5|saka,5|sati,5|Saṃsāra,5"},
             {"SP_GET_LIST_WORDS(1)", "Ānanda,1|lamp,1"},
             {"SP_GET_WORD_CONTENT(5, 'gāma', 0)", "@gāma\n- làng,null"},
             {"SP_GET_WORD_CONTENT(5, 'gāmassa', 1)",
              "@gāma\n- làng\n# Pāli-Anh / Pāli-English\n@gāma\n- village,@gāma\n- village"},
             {"SP_GET_WORD_CONTENT(8, 'gāma', 1)",
              "@gāma\n- village\n# Pāli-Việt / Pāli-Vietnamese\n@gāma\n- làng,@gāma\n- làng"},
             {"SP_GET_WORD_CONTENT(5, 'sati', 1)", "@sati,null"}, // the partner has no entry
             {"SP_GET_WORD_CONTENT(8, 'sati', 1)", "# Pāli-Việt / Pāli-Vietnamese\n@sati,@sati"},
             {"SP_GET_WORD_CONTENT(8, 'sati', 0)", ""},
             {"SP_GET_WORD_CONTENT(5, 'Gāma', 1)", ""}, // case counts
             {"SP_CHECK_WORD(5, 'SAṂSĀRA')", "1"},
             {"SP_CHECK_WORD(5, 'GĀMASSA')", "1"},
             {"SP_CHECK_WORD(5, 'saṃsāra')", "0"},
             {"SP_CHECK_WORD(1, 'Ānanda')", "1"},
             {"SP_CHECK_WORD(1, 'SAṂSĀRA')", "0"},
             {"SP_CHECK_WORD(5, null)", "0"},
             {"SP_CHECK_WORD(null, 'LAMP')", "0"}})
        EXPECT_EQ(Ask(u"kết quả/PALIDICT.FDB"_s, "select * from " + call), answer) << call;
}

TEST_F(BuildVerb, WrongUsageEndsWithTwoAndHelpIsToldOnTheOutput)
{
    EXPECT_THAT(Run(2, "mend"), testing::StartsWith("lumivara-data: there is no verb \"mend\""));
    EXPECT_THAT(Run(2, "build --out /nowhere/at/all"),
                testing::StartsWith("lumivara-data: /nowhere/at/all: there is no such folder"));
    EXPECT_THAT(Run(0, "build --help"), testing::StartsWith("Usage: lumivara-data build "));
}

} // namespace
