#include "support/TestSupport.h"
#include "tools/ToolSupport.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QThread>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

const char16_t CanonRows[] =
    u"select N.ID_VIT, N.ID_VIC, N.NUMBER_VIC, N.NAME_VIC_PAL, N.NAME_VIC_VIE, N.NAME_VIC_ENG, "
    u"N.CONTENT_VIC_PAL, N.CONTENT_VIC_ENG, N.CONTENT_VIC_VIE, N.CONTENT_VIC_PAL_VIE "
    u"from KELORA_CONTENT N";

QList<QList<QVariant>> RowsOf(const QString &file, const char16_t *select)
{
    return OpenedDatabase(file).Rows(QString::fromUtf16(select));
}

/// Small sources and an empty folder for the databases.
class BuildVerb : public testing::Test
{
protected:
    void SetUp() override
    {
        WriteSmallSources(Data());
        QDir().mkpath(Out());
    }

    QString Data() const { return m_scratch.Path(u"data"_s); }
    QString Out() const { return m_scratch.Path(u"kết quả"_s); }
    QString File(const QString &name) const { return Out() + u'/' + name; }
    ToolRun Build(const QStringList &more = {}) const
    {
        return RunDataTool(QStringList{u"build"_s, u"--data"_s, Data(), u"--out"_s, Out()} + more);
    }

    ScratchFolder m_scratch;
};

TEST_F(BuildVerb, MakesTheThreeFilesAndNothingElse)
{
    EXPECT_EQ(Build({u"dictionary"_s}).output, u"PALIDICT.FDB: built\n"_s) << "only the kinds that are named";
    const ToolRun run = Build({u"--force"_s});
    EXPECT_EQ(run.exitCode, 0) << qPrintable(run.errors);
    EXPECT_EQ(run.output, u"KELORA.FDB: built\nPALIDICT.FDB: built\nTARUNECLIENT.FDB: built\n"_s);
    const QStringList files{u"KELORA.FDB"_s, u"PALIDICT.FDB"_s, u"TARUNECLIENT.FDB"_s};
    EXPECT_EQ(QDir(Out()).entryList(QDir::Files | QDir::Hidden, QDir::Name), files);
    for (const QString &name : files) {
        EXPECT_EQ(RowsOf(File(name), u"select MON$READ_ONLY from MON$DATABASE")[0][0].toInt(), name == files[2] ? 0 : 1)
            << "what a reader writes is not read-only";
    }
    const auto first = RowsOf(File(files[0]), CanonRows);
    ASSERT_EQ(Build({u"--force"_s}).exitCode, 0);
    EXPECT_EQ(RowsOf(File(files[0]), CanonRows), first) << "in the same order";
}

TEST_F(BuildVerb, TakesPathsOutsideAsciiInAnyLocale)
{
    const ToolRun run =
        RunDataTool({u"build"_s, u"--data"_s, Data(), u"--out"_s, Out(), u"marks"_s}, {}, {u"LANG=C"_s});
    EXPECT_EQ(run.exitCode, 0) << qPrintable(run.errors);
    EXPECT_TRUE(QFileInfo::exists(File(u"TARUNECLIENT.FDB"_s)));
}

TEST_F(BuildVerb, StoresNullsWhereTheSourcesSayNothing)
{
    ASSERT_EQ(Build().exitCode, 0);
    const auto rows = RowsOf(File(u"KELORA.FDB"_s), CanonRows);
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows[0][5].toString(), u"First, and only"_s);
    EXPECT_TRUE(rows[0][7].toByteArray().contains(">Start<"));
    EXPECT_TRUE(rows[1][5].isNull()) << "no English title";
    EXPECT_TRUE(rows[1][7].toByteArray().isEmpty()) << "no English page without a title";
    EXPECT_TRUE(rows[1][6].toByteArray().isEmpty()) << "left out by the sources";
    EXPECT_TRUE(rows[1][8].toByteArray().contains("Thứ nhì"));
}

TEST_F(BuildVerb, NeverTouchesTheReadersFile)
{
    ASSERT_EQ(Build().exitCode, 0);
    OpenedDatabase(File(u"TARUNECLIENT.FDB"_s))
        .Execute(u"insert into SUTTA_TEXT_FOCUS (ID_FOC, NAME_FOC) values (1, 'của tôi')"_s);
    const ToolRun run = Build({u"--force"_s});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(run.output.contains(u"TARUNECLIENT.FDB: kept"_s));
    const auto rows = RowsOf(File(u"TARUNECLIENT.FDB"_s), u"select NAME_FOC from SUTTA_TEXT_FOCUS");
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0][0].toString(), u"của tôi"_s);

    // Whatever stands there is the reader's, even if it is no database.
    WriteFile(File(u"TARUNECLIENT.FDB"_s), "notes");
    EXPECT_EQ(Build({u"--force"_s}).exitCode, 0);
    EXPECT_EQ(BytesOf(File(u"TARUNECLIENT.FDB"_s)), "notes");
}

TEST_F(BuildVerb, BuildsAgainOnlyWhenSourcesAreNewer)
{
    ASSERT_EQ(Build().exitCode, 0);
    EXPECT_TRUE(Build().output.contains(u"KELORA.FDB: up to date\nPALIDICT.FDB: up to date"_s));
    QThread::msleep(20);
    WriteFile(Data() + u"/canon/passages/own.txt"_s, "@text 1101\nMới | Mới | New\n");
    const ToolRun run = Build();
    EXPECT_TRUE(run.output.contains(u"KELORA.FDB: built\nPALIDICT.FDB: up to date"_s)) << qPrintable(run.output);
    EXPECT_TRUE(RowsOf(File(u"KELORA.FDB"_s), CanonRows)[0][7].toByteArray().contains(">New<"));
}

TEST_F(BuildVerb, AFaultInTheSourcesLeavesTheOldFile)
{
    ASSERT_EQ(Build().exitCode, 0);
    const QByteArray before = BytesOf(File(u"KELORA.FDB"_s));
    WriteFile(Data() + u"/canon/passages/own.txt"_s, "@text 1101\n@picture none.svg x | y\n");
    const ToolRun run = Build({u"--force"_s, u"canon"_s});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_TRUE(run.errors.contains(u"there is no picture \"none.svg\""_s)) << qPrintable(run.errors);
    EXPECT_EQ(BytesOf(File(u"KELORA.FDB"_s)), before);
}

TEST_F(BuildVerb, KilledInTheMiddleItLeavesTheOldFileAndTheNextBuildRecovers)
{
    ASSERT_EQ(Build({u"canon"_s}).exitCode, 0);
    const QByteArray before = BytesOf(File(u"KELORA.FDB"_s));

    QProcess process;
    process.start(ToolPath(), {u"build"_s, u"--data"_s, SampleSources(), u"--out"_s, Out(), u"--force"_s});
    for (int i = 0; i < 10000 && !QFileInfo::exists(File(u"KELORA.FDB.part"_s)); ++i)
        QThread::msleep(1);
    process.kill();
    ASSERT_TRUE(process.waitForFinished());
    ASSERT_EQ(process.exitStatus(), QProcess::CrashExit) << "the build was over before it could be killed";
    EXPECT_TRUE(QFileInfo::exists(File(u"KELORA.FDB.part"_s)));
    EXPECT_EQ(BytesOf(File(u"KELORA.FDB"_s)), before);

    const ToolRun run = Build({u"--force"_s});
    EXPECT_EQ(run.exitCode, 0) << qPrintable(run.errors);
    EXPECT_FALSE(QFileInfo::exists(File(u"KELORA.FDB.part"_s)));
    EXPECT_EQ(RowsOf(File(u"KELORA.FDB"_s), CanonRows).size(), 2);
}

TEST_F(BuildVerb, TheDictionaryAnswersByItsThreeProcedures)
{
    WriteFile(Data() + u"/dictionary/pali.txt"_s,
              "dictionary 5\n% sati\n@sati\n% Saṃsāra\n@S\n% saka\n@saka\n% gāma\n@gāma\n- làng\n");
    WriteFile(Data() + u"/dictionary/english.txt"_s, "dictionary 8\n% gāma\n@gāma\n- village\n");
    WriteFile(Data() + u"/dictionary/anh.txt"_s, "dictionary 1\n% Ānanda\n@A\n% lamp\n@lamp\n");
    WriteFile(Data() + u"/dictionary/forms.txt"_s, "forms 5 8\ngāma: gāmassa\n");
    ASSERT_EQ(Build({u"dictionary"_s}).exitCode, 0);
    OpenedDatabase dictionary(File(u"PALIDICT.FDB"_s));

    const auto list = [&](int kind) {
        QStringList words;
        for (const auto &row :
             dictionary.Rows(u"select e.WORD_NAME, e.DICT_TYPE from SP_GET_LIST_WORDS(%1) e"_s.arg(kind))) {
            words.append(row[0].toString());
            EXPECT_EQ(row[1].toInt(), kind);
        }
        return words.join(u' ');
    };
    EXPECT_EQ(list(5), u"gāma gāmassa saka sati Saṃsāra"_s);
    EXPECT_EQ(list(1), u"Ānanda lamp"_s);
    EXPECT_EQ(list(3), u""_s);
    EXPECT_EQ(list(0), u""_s);

    const auto content = [&](int kind, const char16_t *word, int multi) {
        QByteArrayList rows;
        for (const auto &row : dictionary.Rows(u"select E.WORD_CONTENT, E.WORD_CONTENT_2 "
                                               "from SP_GET_WORD_CONTENT(%1, '%2', %3) E"_s.arg(kind)
                                                   .arg(QString::fromUtf16(word))
                                                   .arg(multi)))
            rows.append(row[0].toByteArray());
        return rows.join('|');
    };
    EXPECT_EQ(content(5, u"gāma", 0), "@gāma\n- làng");
    EXPECT_EQ(content(5, u"gāmassa", 1), "@gāma\n- làng\n# Pāli-Anh / Pāli-English\n@gāma\n- village");
    EXPECT_EQ(content(8, u"gāma", 1), "@gāma\n- village\n# Pāli-Việt / Pāli-Vietnamese\n@gāma\n- làng");
    EXPECT_EQ(content(5, u"sati", 1), "@sati") << "the partner has no entry";
    EXPECT_EQ(content(8, u"sati", 1), "# Pāli-Việt / Pāli-Vietnamese\n@sati") << "only the partner has one";
    EXPECT_EQ(content(8, u"sati", 0), "") << "no row";
    EXPECT_EQ(content(5, u"Gāma", 1), "") << "case counts";

    const auto check = [&](const char16_t *arguments) {
        const auto rows =
            dictionary.Rows(u"select sp.result from sp_check_word(%1) sp"_s.arg(QString::fromUtf16(arguments)));
        return rows.size() == 1 && !rows[0][0].isNull() ? rows[0][0].toInt() : -1;
    };
    EXPECT_EQ(check(u"5, 'SAṂSĀRA'"), 1);
    EXPECT_EQ(check(u"5, 'GĀMASSA'"), 1);
    EXPECT_EQ(check(u"5, 'saṃsāra'"), 0);
    EXPECT_EQ(check(u"1, 'Ānanda'"), 1);
    EXPECT_EQ(check(u"1, 'SAṂSĀRA'"), 0);
    EXPECT_EQ(check(u"5, null"), 0);
    EXPECT_EQ(check(u"null, 'LAMP'"), 0);
}

TEST(BuildUsage, WrongEndsWithTwoAndHelpIsToldOnTheOutput)
{
    const std::pair<QStringList, QString> wrong[]{
        {{}, u"a verb is missing"_s},
        {{u"mend"_s}, u"there is no verb \"mend\""_s},
        {{u"build"_s, u"--loud"_s}, u"Unknown option 'loud'."_s},
        {{u"build"_s, u"all"_s}, u"build does not know \"all\""_s},
        {{u"build"_s, u"--out"_s, u"/nowhere/at all"_s}, u"/nowhere/at all: there is no such folder"_s},
        {{u"check"_s}, u"check wants one FILE"_s},
        {{u"check"_s, u"a"_s, u"b"_s}, u"check wants one FILE"_s}};
    for (const auto &[arguments, message] : wrong) {
        const ToolRun run = RunDataTool(arguments);
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_EQ(run.output, QString());
        EXPECT_TRUE(run.errors.startsWith(u"lumivara-data: "_s + message)) << qPrintable(run.errors);
    }
    for (const QStringList &arguments : {QStringList{u"--help"_s}, QStringList{u"build"_s, u"--help"_s}}) {
        const ToolRun run = RunDataTool(arguments);
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_TRUE(run.output.startsWith(u"Usage: lumivara-data "_s)) << qPrintable(run.output);
        EXPECT_EQ(run.errors, QString());
    }
}

} // namespace
