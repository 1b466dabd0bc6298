#include "support/FullDisk.h"
#include "support/TestSupport.h"
#include "tools/ToolSupport.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

const QString MarkCount = u"select count(*) from SUTTA_TEXT_FOCUS"_s;
const QByteArray Header = "NIK_SUT,NIC_SUT,NAME_FOC,KEYWORD_FOC,PRIORITY_FOC,DESC_FOC,TEXT_FOC\r\n";

class ImportMarks : public testing::Test
{
protected:
    void SetUp() override
    {
        // This process and the tool must know of each other.
        OpenedDatabase(ProductFolder() + u"KELORA.FDB"_s);
        EXPECT_TRUE(QDir().mkpath(m_scratch.Path(u"to"_s)));
        EXPECT_TRUE(QFile::link(qEnvironmentVariable("FIREBIRD_LOCK"), m_scratch.Path(u"to/lock"_s)));
        Make(u"from"_s);
        Make(u"to"_s);
        OpenedDatabase(File(u"from"_s))
            .RunScript(
                u"insert into SUTTA_LIST values (6, 1101, 'Chương <1>', 'Kaṇḍaṃ', null, null);"
                "insert into SUTTA_LIST values (2, 9, 'Kinh', null, 'A discourse', null);"
                "insert into SUTTA_TEXT_FOCUS values (4, '\uFEFFHai, \"ba\" \U0001F600', '\uFEFF<p>một  <b>hai</b></p>"
                "' || ascii_char(13) || ascii_char(10) || '<p>ba&nbsp;&lt;4, \"x\"</p>', 2, 'ghi *chú*' || "
                "ascii_char(13) || ascii_char(10) || ascii_char(13) || ascii_char(10) || '# dòng,', 6, 1101, "
                "'2024-02-29 23:59:00', 'khóa · chìa');"
                "insert into SUTTA_TEXT_FOCUS values (7, null, null, 3, null, 6, 1101, null, null);"
                "insert into SUTTA_TEXT_FOCUS values (8, 'đôi', '<p>x', 4, ' rìa ', 2, 9, '2024-03-01 00:00:00', null);"
                "insert into SUTTA_TEXT_FOCUS values (5, 'lạc', 'y', 1, null, 6, 9999, '2024-03-01 00:00:00', '\"');"_s);
    }
    void Make(const QString &folder) const
    {
        EXPECT_TRUE(QDir().mkpath(m_scratch.Path(folder)));
        const ToolRun run = RunDataTool({u"build"_s, u"marks"_s, u"--quiet"_s, u"--out"_s, m_scratch.Path(folder)});
        EXPECT_EQ(run.exitCode, 0) << qPrintable(run.errors);
    }
    QString File(const QString &folder = u"to"_s) const { return m_scratch.Path(folder + u"/TARUNECLIENT.FDB"_s); }
    QString Source(const QString &ending = u"csv"_s) const { return m_scratch.Path(u"marks."_s + ending); }
    ToolRun Import(const QString &ending = u"csv"_s, const QStringList &more = {}) const
    {
        return RunDataTool(QStringList{u"import"_s, u"marks"_s, Source(ending), u"--into"_s, File()} + more);
    }
    QString Export(const QString &folder, const QString &format) const
    {
        return RunDataTool({u"export"_s, u"marks"_s, u"--format"_s, format, u"--file"_s, File(folder)}).output;
    }
    /// An export without what each post renews: keys, and the date that a mark without one gets.
    QString Comparable(const QString &folder, const QString &format) const
    {
        static const QRegularExpression renewed(
            uR"((?<=\n)\d+,|\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d|(?<=## )\\#\d+| · \d{4}\\-\d\d\\-\d\d \d\d:\d\d)"_s);
        return Export(folder, format).remove(renewed);
    }
    qlonglong Count(const QString &select = MarkCount) const
    {
        return OpenedDatabase(File()).Rows(select)[0][0].toLongLong();
    }

    ScratchFolder m_scratch;
};

TEST_F(ImportMarks, AnExportComesBackWholeAndOnce)
{
    OpenedDatabase program(File()); // has the file open all the time
    for (const QString &format : {u"csv"_s, u"md"_s}) {
        program.RunScript(u"delete from SUTTA_TEXT_FOCUS; delete from SUTTA_LIST;"_s);
        WriteFile(Source(format), Export(u"from"_s, format).toUtf8());
        const ToolRun first = Import(format);
        EXPECT_EQ(first.exitCode, 0) << qPrintable(first.output + first.errors);
        EXPECT_EQ(Comparable(u"to"_s, format).toStdString(), Comparable(u"from"_s, format).toStdString());
        EXPECT_TRUE(
            first.output.endsWith(u"4 marks added, 0 there already, 0 left out, 207 texts added to the list\n"_s))
            << qPrintable(first.output);
        const ToolRun second = Import(format);
        EXPECT_EQ(second.exitCode, 0);
        EXPECT_TRUE(
            second.output.endsWith(u"0 marks added, 4 there already, 0 left out, 0 texts added to the list\n"_s))
            << qPrintable(second.output);
    }
    // Markdown shows no mark-up, so what it was exported from is known again as well.
    OpenedDatabase(File(u"from"_s)).RunScript(u"delete from SUTTA_TEXT_FOCUS where NIC_SUT = 9999;"_s);
    WriteFile(Source(u"md"_s), Export(u"to"_s, u"md"_s).toUtf8());
    QFile::remove(File());
    EXPECT_TRUE(QFile::copy(File(u"from"_s), File()));
    EXPECT_TRUE(
        Import(u"md"_s).output.endsWith(u"1 marks added, 3 there already, 0 left out, 1 texts added to the list\n"_s));
}

TEST_F(ImportMarks, EachMarkIsShownAndEveryOtherTextCanStillCarryOne)
{
    WriteFile(Source(), Export(u"from"_s, u"csv"_s).toUtf8());
    const ToolRun run = Import();
    EXPECT_TRUE(run.output.contains(u"text 9999 of collection 6 (no name) is missing in the list of texts: added"_s));
    EXPECT_EQ(Count(u"select count(*) from SUTTA_TEXT_FOCUS F inner join SUTTA_LIST S "
                    "on S.NIK_SUT = F.NIK_SUT and S.NIC_SUT = F.NIC_SUT"_s),
              4);
    // The program enters its 205 texts only into a list without any of them.
    EXPECT_EQ(Count(u"select count(*) from SUTTA_LIST S where S.NIK_SUT = 6"_s), 206);
    EXPECT_EQ(Count(u"select count(*) from SUTTA_LIST S where S.NIC_SUT = 9971 and S.NAME_SUT_VIE is not null"_s), 1);
}

TEST_F(ImportMarks, ATextWithMarksKeepsItsNamesAndKeysGoOn)
{
    OpenedDatabase(File()).RunScript(
        u"insert into SUTTA_LIST values (6, 1101, 'Của tôi', null, null, 1);"
        "insert into SUTTA_TEXT_FOCUS (ID_FOC, NAME_FOC, NIK_SUT, NIC_SUT) values (40, 'a', 6, 1101);"_s);
    WriteFile(Source(), Header + "6,1101,b,,1,,<p>b\r\n6,1101,b,,1,,<p>b\r\n");
    EXPECT_TRUE(Import().output.endsWith(u"1 marks added, 1 there already, 0 left out, 0 texts added to the list\n"_s));
    EXPECT_EQ(Count(u"select max(F.ID_FOC) from SUTTA_TEXT_FOCUS F"_s), 41);
    EXPECT_EQ(Count(u"select count(*) from SUTTA_LIST S where S.NAME_SUT_VIE = 'Của tôi'"_s), 1);
    EXPECT_EQ(Count(u"select count(*) from SUTTA_TEXT_FOCUS F where F.NAME_FOC = 'b' and octet_length(F.TEXT_FOC) = 7 "
                    "and F.DATETIME_FOC > dateadd(-1 day to current_timestamp)"_s),
              1)
        << "the page has its mark, the row a date";
}

TEST_F(ImportMarks, MarkdownFindsTextsByTheirNames)
{
    OpenedDatabase(File()).RunScript(u"insert into SUTTA_LIST values (6, 1, 'Một', 'Eka', null, null);"
                                     "insert into SUTTA_LIST values (6, 2, 'Đôi', 'Dve', null, null);"
                                     "insert into SUTTA_LIST values (6, 3, 'Đôi', 'Tīṇi', null, null);"_s);
    WriteFile(Source(u"md"_s),
              "stray\n\n# Một · Eka\n## a\n> one\n\n# Dve\n## b\n1 · k\n\n> two *x*\n> <b>\n\nnote\n\n\n"
              "# Đôi\n## c\n> three\n# 6-3\n## d\nKém\n\n> four\n## e\n> five\n");
    const ToolRun run = Import(u"md"_s);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output.section(u'\n', 0, 2).replace(m_scratch.Path(u""_s), u""_s).toStdString(),
              "/marks.md:1: belongs to no mark\n"
              "/marks.md:18: stands below no heading that names one text of the list\n"
              "/marks.md:21: its first line does not begin with a priority: \"Kém\"");
    const QString page = u",\"<HTML>\r\n<head>\r\n<meta http-equiv=\"\"Content-Type\"\" content=\"\"text/html; "
                         "charset=utf-8\"\" />\r\n<body>\r\n<blockquote>\r\n<font face = \"\"Segoe UI\"\">"_s;
    const QString csv = Comparable(u"to"_s, u"csv"_s);
    for (const QString &mark : {u"6,1,\"Một\",\"Eka\",\"\",\"a\",\"\",2,,\"\",\"one\""_s + page + u"<p>one</p>\r\n"_s,
                                u"6,2,\"Đôi\",\"Dve\",\"\",\"b\",\"k\",1,,\"note\",\"two *x*\n<b>\""_s + page +
                                    u"<p>two *x*</p>\r\n<p>&lt;b&gt;</p>\r\n"_s,
                                u"6,3,\"Đôi\",\"Tīṇi\",\"\",\"e\",\"\",2,,\"\",\"five\""_s + page})
        EXPECT_TRUE(csv.contains(mark)) << qPrintable(csv);
    EXPECT_EQ(Count(), 3);
}

TEST_F(ImportMarks, WhatCannotBeDoneLeavesTheFileAsItWas)
{
    QByteArray many = Header;
    for (int i = 0; i < 30000; ++i)
        many += "6,1101,title " + QByteArray::number(i) + ",,2,,<p>" + QByteArray(60, 'x') + "\r\n";
    WriteFile(Source(), many);
    {
        const FullDisk full(4 << 20);
        EXPECT_EQ(Import().exitCode, 2);
    }
    EXPECT_EQ(Count(), 0);
    QProcess stopped;
    stopped.setReadChannel(QProcess::StandardError);
    stopped.start(ToolPath(), {u"import"_s, u"marks"_s, Source(), u"--into"_s, File()});
    while (!stopped.readAllStandardError().contains("adding marks") && stopped.waitForReadyRead())
        ;
    stopped.terminate();
    EXPECT_TRUE(stopped.waitForFinished());
    EXPECT_EQ(stopped.exitCode(), 2);
    EXPECT_TRUE(stopped.readAllStandardError().contains("interrupted"));
    EXPECT_EQ(Count(), 0);
    EXPECT_EQ(Count(u"select count(*) from SUTTA_LIST"_s), 0);

    WriteFile(m_scratch.Path(u"other.FDB"_s), "no database");
    EXPECT_TRUE(QDir().mkpath(m_scratch.Path(u"folder.csv"_s)));
    WriteFile(m_scratch.Path(u"marks.html"_s), "<p>");
    WriteFile(m_scratch.Path(u"small.csv"_s), Header);
    for (const auto &[source, into, said] :
         {std::tuple(u"none.csv"_s, File(), "none.csv: there is no such file"),
          {u"folder.csv"_s, File(), "folder.csv: is no file"},
          {u"marks.html"_s, File(), "no format \"html\""},
          {u"small.csv"_s, m_scratch.Path(u"other.FDB"_s), "other.FDB"},
          {u"small.csv"_s, m_scratch.Path(u"none.FDB"_s), "none.FDB: there is no"}}) {
        const ToolRun run = RunDataTool({u"import"_s, u"marks"_s, m_scratch.Path(source), u"--into"_s, into});
        EXPECT_EQ(run.exitCode, 2) << said;
        EXPECT_TRUE(run.errors.contains(QString::fromUtf8(said))) << qPrintable(run.errors);
    }
}

TEST_F(ImportMarks, ACopyThatTakesTheKeyMeanwhileCostsNothing)
{
    WriteFile(Source(), Header + "6,1101,b,,1,,x\r\n");
    OpenedDatabase program(File());
    TpFIBDataSet post;
    program.Execute(u"insert into SUTTA_TEXT_FOCUS (ID_FOC) values (1)"_s);
    program.Hold(u"insert into SUTTA_TEXT_FOCUS (ID_FOC) values (2)"_s);
    QProcess import;
    import.start(ToolPath(), {u"import"_s, u"marks"_s, Source(), u"--into"_s, File()});
    EXPECT_FALSE(import.waitForFinished(1500)) << "waits for the key that another one holds";
    program.Commit();
    EXPECT_TRUE(import.waitForFinished());
    EXPECT_EQ(import.exitCode(), 0);
    EXPECT_EQ(Count(u"select F.ID_FOC from SUTTA_TEXT_FOCUS F where F.NAME_FOC = 'b'"_s), 3);
}

} // namespace
