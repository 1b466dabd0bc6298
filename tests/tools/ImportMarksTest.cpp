#include "support/FullDisk.h"
#include "tools/ToolSupport.h"

#include <QDir>
#include <QRegularExpression>

using namespace Qt::StringLiterals;
using testing::EndsWith;
using testing::HasSubstr;

namespace {

const QString From = u"from/TARUNECLIENT.FDB"_s, To = u"to/TARUNECLIENT.FDB"_s;
const QByteArray Header = "NIK_SUT,NIC_SUT,NAME_FOC,KEYWORD_FOC,PRIORITY_FOC,DESC_FOC,TEXT_FOC\r\n";

class ImportMarks : public ToolTest
{
protected:
    void SetUp() override
    {
        // This process and the tool must know of each other.
        OpenedDatabase(ProductFolder() + u"KELORA.FDB"_s);
        for (const QString &folder : {u"from"_s, u"to"_s})
            EXPECT_TRUE(QDir().mkpath(Path(folder)));
        EXPECT_TRUE(QFile::link(qEnvironmentVariable("FIREBIRD_LOCK"), Path(u"to/lock"_s)));
        Run(0, "build marks --out from");
        Run(0, "build marks --out to");
        OpenedDatabase(Path(From))
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
    std::string Import(const std::string &ending = "csv", int exitCode = 0) const
    {
        return Run(exitCode, "import marks marks." + ending, {u"--into"_s, To});
    }
    QString Export(const QString &file, const std::string &format) const
    {
        return QString::fromStdString(Run(0, "export marks --format " + format, {u"--file"_s, file}));
    }
    void PutExport(const QString &file, const std::string &format) const
    {
        Put(u"marks."_s + QString::fromStdString(format), Export(file, format).toUtf8());
    }
    /// An export without what each post renews: keys, and the date that a mark without one gets.
    std::string Comparable(const QString &file, const std::string &format) const
    {
        static const QRegularExpression renewed(
            uR"((?<=\n)\d+,|\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d|(?<=## )\\#\d+| · \d{4}\\-\d\d\\-\d\d \d\d:\d\d)"_s);
        return Export(file, format).remove(renewed).toStdString();
    }
};

TEST_F(ImportMarks, AnExportComesBackWholeAndOnce)
{
    OpenedDatabase program(Path(To)); // has the file open all the time
    for (const std::string format : {"csv", "md"}) {
        program.RunScript(u"delete from SUTTA_TEXT_FOCUS; delete from SUTTA_LIST;"_s);
        PutExport(From, format);
        EXPECT_THAT(Import(format),
                    EndsWith("4 marks added, 0 there already, 0 left out, 207 texts added to the list\n"));
        EXPECT_EQ(Comparable(To, format), Comparable(From, format));
        EXPECT_THAT(Import(format),
                    EndsWith("0 marks added, 4 there already, 0 left out, 0 texts added to the list\n"));
    }
    // Markdown shows no mark-up, so what it was exported from is known again as well.
    OpenedDatabase(Path(From)).Execute(u"delete from SUTTA_TEXT_FOCUS where NIC_SUT = 9999"_s);
    PutExport(To, "md");
    QFile::remove(Path(To));
    EXPECT_TRUE(QFile::copy(Path(From), Path(To)));
    EXPECT_THAT(Import("md"), EndsWith("1 marks added, 3 there already, 0 left out, 1 texts added to the list\n"));
}

TEST_F(ImportMarks, EachMarkIsShownAndEveryOtherTextCanStillCarryOne)
{
    PutExport(From, "csv");
    EXPECT_THAT(Import(), HasSubstr("text 9999 of collection 6 (no name) is missing in the list of texts: added"));
    EXPECT_EQ(Ask(To, "select count(*) from SUTTA_TEXT_FOCUS F inner join SUTTA_LIST S on S.NIK_SUT = F.NIK_SUT and "
                      "S.NIC_SUT = F.NIC_SUT"),
              "4");
    // The program enters its 205 texts only into a list without any of them.
    EXPECT_EQ(Ask(To, "select count(*), count(nullif(NIC_SUT = 9971 and NAME_SUT_VIE is not null, false)) "
                      "from SUTTA_LIST where NIK_SUT = 6"),
              "206,1");
}

TEST_F(ImportMarks, ATextWithMarksKeepsItsNamesAndKeysGoOn)
{
    OpenedDatabase(Path(To)).RunScript(
        u"insert into SUTTA_LIST values (6, 1101, 'Của tôi', null, null, 1);"
        "insert into SUTTA_TEXT_FOCUS (ID_FOC, NAME_FOC, NIK_SUT, NIC_SUT) values (40, 'a', 6, 1101);"_s);
    Put(u"marks.csv"_s, Header + "6,1101,b,,1,,<p>b\r\n6,1101,b,,1,,<p>b\r\n");
    EXPECT_THAT(Import(), EndsWith("1 marks added, 1 there already, 0 left out, 0 texts added to the list\n"));
    EXPECT_EQ(Ask(To, "select NAME_SUT_VIE from SUTTA_LIST where NIC_SUT = 1101"), "Của tôi");
    // The page has its mark, the row a date.
    EXPECT_EQ(Ask(To, "select ID_FOC, TEXT_FOC from SUTTA_TEXT_FOCUS where NAME_FOC = 'b' and DATETIME_FOC > "
                      "dateadd(-1 day to current_timestamp)"),
              "41,\uFEFF<p>b");
}

TEST_F(ImportMarks, MarkdownFindsTextsByTheirNames)
{
    OpenedDatabase(Path(To)).RunScript(u"insert into SUTTA_LIST values (6, 1, 'Một', 'Eka', null, null);"
                                       "insert into SUTTA_LIST values (6, 2, 'Đôi', 'Dve', null, null);"
                                       "insert into SUTTA_LIST values (6, 3, 'Đôi', 'Tīṇi', null, null);"_s);
    Put(u"marks.md"_s, "stray\n\n# Một · Eka\n## a\n> one\n\n# Dve\n## b\n1 · k\n\n> two *x*\n> <b>\n\nnote\n\n\n"
                       "# Đôi\n## c\n> three\n# 6-3\n## d\nKém\n\n> four\n## e\n> five\n");
    ExpectParts(Import("md", 1), {"marks.md:1: belongs to no mark\n",
                                  "marks.md:18: stands below no heading that names one text of the list\n",
                                  "marks.md:21: its first line does not begin with a priority: \"Kém\"\n"});
    const std::string page = ",\"<HTML>\r\n<head>\r\n<meta http-equiv=\"\"Content-Type\"\" content=\"\"text/html; "
                             "charset=utf-8\"\" />\r\n<body>\r\n<blockquote>\r\n<font face = \"\"Segoe UI\"\">";
    ExpectParts(Comparable(To, "csv"), {"6,1,\"Một\",\"Eka\",\"\",\"a\",\"\",2,,\"\",\"one\"" + page + "<p>one</p>\r\n",
                                        "6,2,\"Đôi\",\"Dve\",\"\",\"b\",\"k\",1,,\"note\",\"two *x*\n<b>\"" + page +
                                            "<p>two *x*</p>\r\n<p>&lt;b&gt;</p>\r\n",
                                        "6,3,\"Đôi\",\"Tīṇi\",\"\",\"e\",\"\",2,,\"\",\"five\"" + page});
    EXPECT_EQ(Ask(To, "select count(*) from SUTTA_TEXT_FOCUS"), "3");
}

TEST_F(ImportMarks, WhatCannotBeDoneLeavesTheFileAsItWas)
{
    QByteArray many = Header;
    for (int i = 0; i < 30000; ++i)
        many += "6,1101,title " + QByteArray::number(i) + ",,2,,<p>" + QByteArray(60, 'x') + "\r\n";
    Put(u"marks.csv"_s, many);
    const std::string counts = "select (select count(*) from SUTTA_TEXT_FOCUS), (select count(*) from SUTTA_LIST) "
                               "from RDB$DATABASE";
    {
        const FullDisk full(4 << 20);
        Import("csv", 2);
    }
    EXPECT_EQ(Ask(To, counts), "0,0");
    EXPECT_THAT(Stopped(false, "adding marks", "import marks marks.csv --into to/TARUNECLIENT.FDB"),
                HasSubstr("interrupted"));
    EXPECT_EQ(Ask(To, counts), "0,0");

    Put(u"other.FDB"_s, "no database");
    Put(u"folder.csv/x"_s, "");
    Put(u"marks.html"_s, "<p>");
    Put(u"small.csv"_s, Header);
    for (const auto &[words, said] : std::initializer_list<std::pair<std::string, std::string>>{
             {"none.csv --into to/TARUNECLIENT.FDB", "none.csv: there is no such file"},
             {"folder.csv --into to/TARUNECLIENT.FDB", "folder.csv: is no file"},
             {"marks.html --into to/TARUNECLIENT.FDB", "no format \"html\""},
             {"small.csv --into other.FDB", "other.FDB"},
             {"small.csv --into none.FDB", "none.FDB: there is no"}})
        EXPECT_THAT(Run(2, "import marks " + words), HasSubstr(said));
}

TEST_F(ImportMarks, ACopyThatTakesTheKeyMeanwhileCostsNothing)
{
    Put(u"marks.csv"_s, Header + "6,1101,b,,1,,x\r\n");
    OpenedDatabase program(Path(To));
    program.Execute(u"insert into SUTTA_TEXT_FOCUS (ID_FOC) values (1)"_s);
    program.Hold(u"insert into SUTTA_TEXT_FOCUS (ID_FOC) values (2)"_s);
    QProcess import;
    Start(import, "import marks marks.csv --into to/TARUNECLIENT.FDB");
    EXPECT_FALSE(import.waitForFinished(1500)) << "waits for the key that another one holds";
    program.Commit();
    EXPECT_TRUE(import.waitForFinished());
    EXPECT_EQ(import.exitCode(), 0);
    EXPECT_EQ(Ask(To, "select ID_FOC from SUTTA_TEXT_FOCUS where NAME_FOC = 'b'"), "3");
}

} // namespace
