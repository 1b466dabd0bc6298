#include "support/FullDisk.h"
#include "tools/ToolSupport.h"

#include <QDate>

using namespace Qt::StringLiterals;
using testing::EndsWith;
using testing::HasSubstr;

namespace {

const QString From = u"from/TARUNECLIENT.FDB"_s, To = u"to/TARUNECLIENT.FDB"_s;
const QByteArray Header = "NIK_SUT,NIC_SUT,NAME_FOC,KEYWORD_FOC,PRIORITY_FOC,DESC_FOC,TEXT_FOC\r\n";

/// A file of marks, one of them of a text that its list does not have, and a file as delivered.
class MarksVerbs : public ToolTest
{
protected:
    void SetUp() override
    {
        EXPECT_TRUE(QDir().mkpath(Path(u"from"_s)));
        // This process and the tool must know of each other.
        EXPECT_TRUE(QFile::link(LiveFolder(), Path(u"to"_s)));
        QFile::remove(Path(To));
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
    std::string Export(const QString &file, const std::string &format) const
    {
        return Run(0, "export marks --format " + format, {u"--file"_s, file});
    }
    void PutExport(const QString &file, const std::string &format) const
    {
        Put(u"marks."_s + QString::fromStdString(format), QByteArray::fromStdString(Export(file, format)));
    }
    /// An export without what each post renews: keys, and the date that a mark without one gets.
    std::string Comparable(const QString &file, const std::string &format) const
    {
        static const QRegularExpression renewed(
            uR"((?<=\n)\d+,|\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d(\.\d+)?|(?<=## )\\#\d+| · \d{4}\\-\d\d\\-\d\d \d\d:\d\d)"_s);
        return QString::fromStdString(Export(file, format)).remove(renewed).toStdString();
    }
    std::string Backup(int exitCode, const std::string &more = "") const
    {
        return Run(exitCode, "backup marks --file from/TARUNECLIENT.FDB " + more);
    }

    const QString m_backup = u"from/backup/TARUNECLIENT-%1.fbk"_s.arg(QDate::currentDate().toString(Qt::ISODate));
};

TEST_F(MarksVerbs, ABackupMadeWhileTheFileIsOpenComesBackWhole)
{
    const std::string all = "select * from SUTTA_TEXT_FOCUS order by 1";
    OpenedDatabase inUse(Path(From));
    Backup(0);
    Backup(0); // a second one of the day has a name of its own
    EXPECT_EQ(Names(u"from/backup"_s).size(), 2);
    Run(0, "restore --to RESTORED.FDB", {m_backup});
    OpenedDatabase restored(Path(u"RESTORED.FDB"_s));
    EXPECT_EQ(restored.Text(all), inUse.Text(all));
    EXPECT_EQ(restored.Text("select MON$FORCED_WRITES from MON$DATABASE"), "1");
    EXPECT_THROW(restored.Execute(u"insert into SUTTA_TEXT_FOCUS (ID_FOC) values (4)"_s), std::exception);
    // Nothing that exists is written over.
    const QByteArray saved = Bytes(m_backup), marks = Bytes(From);
    Backup(2, "--to " + m_backup.toStdString());
    Run(2, "restore --to from/TARUNECLIENT.FDB", {m_backup});
    EXPECT_TRUE(Bytes(m_backup) == saved && Bytes(From) == marks);
}

TEST_F(MarksVerbs, ADamagedBackupLeavesNothingBehind)
{
    Backup(0);
    const QByteArray whole = Bytes(m_backup);
    const QByteArray engines = whole.left(whole.indexOf("\nlumivara-sha256 "));
    const QByteArray used = engines.left(engines.lastIndexOf('\n') + 1); // the engine fills up with zeros
    for (const QByteArray &bytes : {QByteArray(), QByteArray("no backup"), used.left(100), used.left(used.size() / 2),
                                    used.left(used.size() - 40), Bytes(From)}) {
        Put(u"damaged.fbk"_s, bytes);
        EXPECT_THAT(Run(2, "restore damaged.fbk --to to/RESTORED.FDB"), testing::StartsWith("lumivara-data: "));
        EXPECT_EQ(Names(u"to"_s), (QStringList{u"TARUNECLIENT.FDB"_s, u"lock"_s})) << bytes.size();
    }
}

TEST_F(MarksVerbs, DailyBackupsComeOnceADayAndSevenStay)
{
    QStringList kept{u"TARUNECLIENT-2020-01-01-2.fbk"_s, u"TARUNECLIENT-mine.fbk"_s, u"notes.txt"_s};
    for (const QString &name : std::as_const(kept))
        Put(u"from/backup/"_s + name, "mine");
    for (int day = 1; day <= 9; ++day) {
        const QString name = u"TARUNECLIENT-2020-01-0%1.fbk"_s.arg(day);
        Put(u"from/backup/"_s + name, "old");
        if (day > 3)
            kept.append(name);
    }
    Backup(0, "--daily");
    kept.append(m_backup.section(u'/', 2));
    EXPECT_THAT(Names(u"from/backup"_s), testing::UnorderedElementsAreArray(kept));
    const QByteArray first = Bytes(m_backup);
    OpenedDatabase(Path(From)).Execute(u"delete from SUTTA_TEXT_FOCUS"_s);
    Backup(0, "--daily");
    EXPECT_TRUE(Bytes(m_backup) == first);
}

TEST_F(MarksVerbs, AFailedBackupLeavesTheFolderAsItWas)
{
    OpenedDatabase(Path(From))
        .Execute(u"update SUTTA_TEXT_FOCUS set TEXT_FOC = (select list(rpad('x', 8000, 'y')) "
                 "from RDB$RELATION_FIELDS, RDB$DATABASE)"_s);
    {
        const FullDisk full(8 << 20);
        EXPECT_THAT(Backup(2, "--daily"), HasSubstr("from/TARUNECLIENT.FDB into "));
    }
    EXPECT_EQ(Names(u"from/backup"_s), QStringList());
}

TEST_F(MarksVerbs, ExportsHoldEveryMarkByText)
{
    EXPECT_EQ(Export(From, "csv"),
              "ID_FOC,NIK_SUT,NIC_SUT,NAME_SUT_VIE,NAME_SUT_PAL,NAME_SUT_ENG,NAME_FOC,KEYWORD_FOC,PRIORITY_FOC,"
              "DATETIME_FOC,DESC_FOC,TEXT,TEXT_FOC,TEXT_FORM,REFERENCE\r\n"
              "8,2,9,\"Kinh\",,\"A discourse\",\"đôi\",,4,2024-03-01T00:00:00,\" rìa \",\"x\",\"<p>x\",utf-8,\r\n"
              "4,6,1101,\"Chương <1>\",\"Kaṇḍaṃ\",,\"\uFEFFHai, \"\"ba\"\" \U0001F600\",\"khóa · chìa\",2,"
              "2024-02-29T23:59:00,\"ghi *chú*\r\n\r\n# dòng,\",\"một hai\nba\u00A0<4, \"\"x\"\"\","
              "\"<p>một  <b>hai</b></p>\r\n<p>ba&nbsp;&lt;4, \"\"x\"\"</p>\",utf-8-bom,\"1101\"\r\n"
              "7,6,1101,\"Chương <1>\",\"Kaṇḍaṃ\",,,,3,,,\"\",,none,\"1101\"\r\n"
              "5,6,9999,,,,\"lạc\",\"\"\"\",1,2024-03-01T00:00:00,,\"y\",\"y\",utf-8,\"9999\"\r\n");
    EXPECT_THAT(
        Export(From, "html"),
        HasSubstr("<h1>Chương &lt;1&gt; · Kaṇḍaṃ</h1>\n<h2>Hai, &quot;ba&quot; \U0001F600</h2>\n"
                  "<p><small>(1101) · Cao · 2024-02-29 23:59 · khóa · chìa</small></p>\n<blockquote>một hai<br>\n"
                  "ba\u00A0&lt;4, &quot;x&quot;</blockquote>\n<p>ghi *chú*<br>\n<br>\n# dòng,</p>\n"));
    EXPECT_THAT(
        Export(From, "markdown"),
        HasSubstr("# Chương \\<1\\> · Kaṇḍaṃ <!-- 6-1101 -->\n\n## Hai, \"ba\" \U0001F600\n\n"
                  "\\(1101\\) · Cao · 2024\\-02\\-29 23:59 · khóa · chìa\n\n> một hai  \n> ba\u00A0\\<4, \"x\"\n\n"
                  "ghi \\*chú\\*  \n  \n\\# dòng,\n"));
}

TEST_F(MarksVerbs, ExportsTellWhereTheWordsStandInTheCanon)
{
    Put(u"canon/canon.csv"_s, "kind,key,group,pali,vietnamese,page_vietnamese\n"
                              "group,1,,P,N,\ntext,1101,1,A,B,a.html\n");
    Put(u"canon/a.html"_s, "<h1>Một</h1><p>hai <b>ba</b> bốn</p><p>năm sáu</p>");
    Run(0, "import canon canon --into CANON.FDB");
    OpenedDatabase(Path(From))
        .RunScript(u"update SUTTA_TEXT_FOCUS set TEXT_FOC = '<p>ba  <i>bốn</i></p><p>năm' where ID_FOC = 4;"
                   "update SUTTA_TEXT_FOCUS set TEXT_FOC = 'bảy' where ID_FOC = 7;"_s);
    const std::string csv = Export(From, "csv --canon CANON.FDB");
    EXPECT_THAT(csv, HasSubstr(",\"1101:2\"\r\n7,6,1101,"));
    EXPECT_THAT(csv, HasSubstr(",\"1101\"\r\n5,6,9999,")) << "its words do not stand there";
    EXPECT_THAT(Export(From, "html --canon CANON.FDB"), HasSubstr("<small>(1101:2) · Cao · "));
    EXPECT_THAT(Run(2, "export marks --format csv --canon none.FDB", {u"--file"_s, From}), HasSubstr("none.FDB"));
    Put(u"marks.md"_s, QByteArray::fromStdString(Export(From, "md --canon CANON.FDB")));
    EXPECT_THAT(Import("md"), HasSubstr("4 marks added"));
    EXPECT_EQ(Ask(To, "select KEYWORD_FOC, PRIORITY_FOC from SUTTA_TEXT_FOCUS where PRIORITY_FOC = 2"), "khóa · chìa,2")
        << "a reference is no keyword";
}

TEST_F(MarksVerbs, CheckNamesWhatPutsMarksAtRisk)
{
    EXPECT_EQ(Run(1, "check from/TARUNECLIENT.FDB"),
              "mark 5: text 9999 of collection 6 is missing in the list, so the mark is never shown\n"
              "2 texts, 4 marks: 1 findings\n");
    OpenedDatabase(Path(From))
        .RunScript(u"alter table SUTTA_TEXT_FOCUS drop constraint PK_SUTTA_TEXT_FOCUS;"
                   "alter table SUTTA_LIST drop constraint PK_SUTTA_LIST; commit;"
                   "update SUTTA_TEXT_FOCUS set ID_FOC = 4 where ID_FOC in (5, 7);"
                   "update SUTTA_TEXT_FOCUS set NIC_SUT = 1101 where NIC_SUT = 9999;"
                   "insert into SUTTA_LIST values (2, 9, 'Kinh', null, null, null);"_s);
    QByteArray bytes = Bytes(From);
    constexpr int flags = 42; // of the header page; the bit asks for forced writes
    EXPECT_EQ(bytes[flags] & 2, 2) << "the file as built";
    bytes[flags] = static_cast<char>(bytes[flags] & ~2);
    Put(From, bytes);
    EXPECT_EQ(Run(1, "check from/TARUNECLIENT.FDB"),
              "the file: forced writes are off, a power cut may take marks with it\n"
              "text 9 of collection 2: stands in the list 2 times, and so does each of its marks\n"
              "mark 4: 3 have this key, so they can be neither changed nor deleted\n"
              "SUTTA_LIST: has no primary key\nSUTTA_TEXT_FOCUS: has no primary key\n"
              "3 texts, 4 marks: 3 findings\n");
}

TEST_F(MarksVerbs, AnExportComesBackWholeAndOnce)
{
    OpenedDatabase program(Path(To)); // has the file open all the time
    for (const std::string format : {"csv", "md"}) {
        program.RunScript(u"delete from SUTTA_TEXT_FOCUS; delete from SUTTA_LIST;"_s);
        PutExport(From, format);
        const std::string told = Import(format);
        EXPECT_THAT(told, EndsWith("4 marks added, 0 there already, 0 left out, 207 texts added to the list\n"));
        EXPECT_THAT(told, HasSubstr("text 9999 of collection 6 (no name) is missing in the list of texts: added"));
        // Each is shown, and every other text can still carry one: the program enters its 205 only into an empty list.
        EXPECT_EQ(program.Text("select count(*) from SUTTA_TEXT_FOCUS inner join SUTTA_LIST using (NIK_SUT, NIC_SUT)"),
                  "4");
        EXPECT_EQ(program.Text("select count(*), count(nullif(NIC_SUT = 9971 and NAME_SUT_VIE is not null, false)) "
                               "from SUTTA_LIST where NIK_SUT = 6"),
                  "206,1");
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

TEST_F(MarksVerbs, EveryRowComesBackFromCsvByteForByte)
{
    OpenedDatabase source(Path(From));
    source.RunScript(
        u"delete from SUTTA_TEXT_FOCUS;"
        "insert into SUTTA_TEXT_FOCUS values (1, 'a', x'FF00EFBBBF0D', null, null, 6, 1101, '2024-02-29 "
        "23:59:58.9999', '');"
        "insert into SUTTA_TEXT_FOCUS values (2, '\uFEFFa', x'EFBBBFEFBBBF3C703E0D', 1, '', 6, 1101, null, 'k');"
        "insert into SUTTA_TEXT_FOCUS values (3, '', x'3C703E0A0D0A22', 4, ascii_char(13), 6, 1101, '1999-01-01 "
        "00:00:00.0001', "
        "null);"
        "insert into SUTTA_TEXT_FOCUS values (4, null, '', 4, null, 6, 1101, '2024-01-01 00:00:00', null);"
        "insert into SUTTA_TEXT_FOCUS values (5, null, null, 4, null, 6, 1101, '2024-01-01 00:00:00', null);"
        "insert into SUTTA_TEXT_FOCUS values (6, null, null, 4, null, 6, 1101, '2024-01-01 00:00:00', null);"
        "insert into SUTTA_TEXT_FOCUS values (7, '\u200Ba\u200B', x'E2808B', 4, '\u00ADb', 6, 1101, '2024-01-01 "
        "00:00:00.5', '\u2060\uFEFFk');"
        "insert into SUTTA_TEXT_FOCUS values (8, '\u00ADa', x'C2AD', 4, ' \t', 6, 1101, '2024-01-01', '\u200D');"_s);
    const QString rows = u"select F.*, cast(F.DATETIME_FOC as varchar(30)) from SUTTA_TEXT_FOCUS F order by F.ID_FOC"_s;
    PutExport(From, "csv");
    EXPECT_THAT(Import(), EndsWith("8 marks added, 0 there already, 0 left out, 205 texts added to the list\n"));
    EXPECT_EQ(OpenedDatabase(Path(To)).Rows(rows), source.Rows(rows));
    // And so twice: equal marks are as many as they were.
    EXPECT_THAT(Import(), EndsWith("0 marks added, 8 there already, 0 left out, 0 texts added to the list\n"));
    // What earlier exports wrote: no form, titles without U+FEFF, everything in quotes.
    Put(u"marks.csv"_s,
        "ID_FOC,NIK_SUT,NIC_SUT,NAME_SUT_VIE,NAME_SUT_PAL,NAME_SUT_ENG,NAME_FOC,KEYWORD_FOC,PRIORITY_FOC,"
        "DATETIME_FOC,DESC_FOC,TEXT,TEXT_FOC\r\n2,6,1101,\"\",\"\",\"\",\"a\",\"k\",1,,\"\",\"x\","
        "\"\uFEFF<p>\r\"\r\n9,6,1101,\"\",\"\",\"\",\"a\",\"\",1,2020-01-01T00:00:00,\"\",\"\",\"\"\r\n");
    EXPECT_THAT(Import(), EndsWith("1 marks added, 1 there already, 0 left out, 0 texts added to the list\n"));
    EXPECT_EQ(Ask(To, "select NAME_FOC, TEXT_FOC, DESC_FOC, KEYWORD_FOC from SUTTA_TEXT_FOCUS where ID_FOC = 9"),
              "a,null,null,null");
}

TEST_F(MarksVerbs, TheLargestExcerptComesBack)
{
    // On one line, half of it quotes, which the table doubles.
    OpenedDatabase(Path(From))
        .RunScript(u"delete from SUTTA_TEXT_FOCUS; set term ^ ; execute block as declare T blob sub_type 0; declare I "
                   u"integer = 0; begin "
                   "T = rpad('', 6000, 'x\"'); while (I < 12) do begin T = T || T; I = I + 1; end insert into "
                   "SUTTA_TEXT_FOCUS values (1, 'a', :T, 2, null, 6, 1101, '2024-01-01 00:00:00', null); end ^"_s);
    PutExport(From, "csv");
    EXPECT_THAT(Import(), HasSubstr("1 marks added, 0 there already, 0 left out"));
    const std::string size = "select octet_length(TEXT_FOC), hash(TEXT_FOC) from SUTTA_TEXT_FOCUS";
    EXPECT_EQ(Ask(To, size), Ask(From, size));
    EXPECT_THAT(Ask(To, size), testing::StartsWith("24576000,"));
}

TEST_F(MarksVerbs, TheListIsBroughtUpToACanonAndMarksStay)
{
    const std::string list =
        "select NIC_SUT, NAME_SUT_VIE, NAME_SUT_PAL, NAME_SUT_ENG from SUTTA_LIST where NIK_SUT <> 6 or "
        "NIC_SUT in (1101, 9999, 9971) order by NIK_SUT, NIC_SUT";
    const std::string marks = "select * from SUTTA_TEXT_FOCUS order by 1";
    OpenedDatabase program(Path(From)); // has the file open all the time
    program.RunScript(u"insert into SUTTA_LIST values (6, 9999, 'Lạ', null, null, null);"_s);
    const std::string before = Ask(From, list), kept = Ask(From, marks);
    const std::string words = "update-list --file from/TARUNECLIENT.FDB";
    const std::string told = Run(1, words);
    ExpectParts(told,
                {"text 1101: named Chương <1> · Kaṇḍaṃ, in the canon Chương Verañja · Verañjakaṇḍaṃ\n",
                 "text 9971: missing: ", "204 texts missing, 1 names differ: nothing was written; --write does it\n"});
    EXPECT_EQ(Ask(From, list), before);
    ExpectParts(Run(0, words + " --write --json"), {"\"texts added\": 204", "\"names renewed\": 1"});
    EXPECT_EQ(Ask(From, marks), kept);
    EXPECT_THAT(Ask(From, list),
                testing::MatchesRegex("9,Kinh,null,A discourse\\|1101,Chương Verañja,Verañjakaṇḍaṃ,null\\|"
                                      "9971,.+\\|9999,Lạ,null,null"));
    EXPECT_EQ(Run(0, words), "0 texts missing, 0 names differ\n");
    EXPECT_THAT(Run(2, words + " --canon from/TARUNECLIENT.FDB"), HasSubstr("no canon"));
    EXPECT_EQ(Run(0, "check from/TARUNECLIENT.FDB"), "207 texts, 4 marks: nothing wrong\n");
}

TEST_F(MarksVerbs, AnImportKeepsNamesOfTextsWithMarksAndKeysGoOn)
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

TEST_F(MarksVerbs, MarkdownFindsTextsByTheirNames)
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
    ExpectParts(Comparable(To, "csv"), {"6,1,\"Một\",\"Eka\",,\"a\",,2,,,\"one\"" + page + "<p>one</p>\r\n",
                                        "6,2,\"Đôi\",\"Dve\",,\"b\",\"k\",1,,\"note\",\"two *x*\n<b>\"" + page +
                                            "<p>two *x*</p>\r\n<p>&lt;b&gt;</p>\r\n",
                                        "6,3,\"Đôi\",\"Tīṇi\",,\"e\",,2,,,\"five\"" + page});
    EXPECT_EQ(Ask(To, "select count(*) from SUTTA_TEXT_FOCUS"), "3");
}

TEST_F(MarksVerbs, AnImportThatCannotBeDoneLeavesTheFileAsItWas)
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
    Put(u"small.csv"_s, Header);
    for (const auto &[words, said] : std::initializer_list<std::pair<std::string, std::string>>{
             {"none.csv --into to/TARUNECLIENT.FDB", "none.csv: there is no such file"},
             {"folder.csv --into to/TARUNECLIENT.FDB", "folder.csv: is no regular file"},
             {"small.csv --into other.FDB", "other.FDB"},
             {"small.csv --into none.FDB", "none.FDB: there is no"}})
        EXPECT_THAT(Run(2, "import marks " + words), HasSubstr(said));
}

TEST_F(MarksVerbs, ACopyThatTakesTheKeyMeanwhileCostsTheImportNothing)
{
    Put(u"marks.csv"_s, Header + "6,1101,b,,1,,x\r\n");
    OpenedDatabase program(Path(To));
    program.Execute(u"insert into SUTTA_TEXT_FOCUS (ID_FOC) values (1)"_s);
    program.Hold(u"insert into SUTTA_TEXT_FOCUS (ID_FOC) values (2)"_s);
    QProcess import;
    Start(import, "import marks marks.csv --into to/TARUNECLIENT.FDB");
    const std::string atTheKey = "select count(*) from MON$STATEMENTS where MON$STATE = 1 and "
                                 "MON$ATTACHMENT_ID <> current_connection";
    while (Ask(To, atTheKey) != "1") // it waits for the key that the program holds
        ASSERT_FALSE(import.waitForFinished(1));
    program.Commit();
    EXPECT_TRUE(import.waitForFinished());
    EXPECT_EQ(import.exitCode(), 0);
    EXPECT_EQ(Ask(To, "select ID_FOC from SUTTA_TEXT_FOCUS where NAME_FOC = 'b'"), "3");
}

} // namespace
