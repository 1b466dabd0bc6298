#include "stores/ClientsDM.h"
#include "stores/settings/Options.h"
#include "support/FullDisk.h"
#include "tools/ToolSupport.h"

#include <QFile>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace std::string_literals;
using testing::HasSubstr;

namespace {

const QString Canon = u"K.FDB"_s;
const char *const ImportSource = "import canon source --into K.FDB";

/// A folder with what is imported ("source") and the files that come of it.
class CanonTransfer : public ToolTest
{
protected:
    std::string Page(const std::string &column, int number) const
    {
        const std::string where = " from KELORA_CONTENT where NUMBER_VIC = " + std::to_string(number);
        return Ask(Canon, "select CONTENT_VIC_" + column + where);
    }
    std::string AllOf(const QString &file) const
    {
        return Ask(file, "select * from KELORA_TREE order by 1") +
               Ask(file, "select * from KELORA_CONTENT order by 1, 2");
    }
    /// Two groups of segmented texts in three languages.
    void PutSegmented() const
    {
        for (const auto &[name, json] : std::initializer_list<std::pair<const char *, QByteArray>>{
                 {"root/pli/ms/long/k10_root-pli-ms",
                  R"({"k10:0.1":"Dīgho ","k10:0.2":"Dasamaṃ ","k10:1.1":"Ekaṃ <b>. ","k10:1.2":"Dve. "})"},
                 {"root/pli/ms/long/k2_root-pli-ms", "\xEF\xBB\xBF{\"k2:0.1\":\"Dutiyaṃ\",\"k2:1.1\":\"Tīṇi.\"}"},
                 {"root/pli/ms/middle/m1_root-pli-ms", R"({"m1:1.1":"Cattāri."})"},
                 {"translation/vi/an/long/k10_translation-vi-an",
                  R"({"k10:0.2":"Thứ mười","k10:1.1":"Một \"&\".","k10:1.3":"Thêm."})"},
                 {"translation/vi/binh/long/k10_translation-vi-binh", R"({"k10:1.1":"Bình."})"},
                 {"translation/en/bo/middle/m1_translation-en-bo", R"({"m1:1.1":"Four."})"},
                 {"html/pli/ms/long/k10_html",
                  R"({"k10:0.1":"<header><p>{}</p>","k10:0.2":"<h1>{}</h1></header>",)"
                  R"("k10:1.1":"<p onclick='x'>{}","k10:1.2":"{}</p><script>x</script>"})"}})
            Put(u"source/"_s + QString::fromUtf8(name) + u".json"_s, json);
    }
};

TEST_F(CanonTransfer, SegmentedTextsBecomePagesAndAParallelTable)
{
    PutSegmented();
    ExpectParts(Run(0, "import canon source --into K.FDB --json"),
                {"\"texts\": 3", "\"noteCount\": 2", "English only beside Pāli"});
    Run(0, "check K.FDB");
    EXPECT_EQ(Ask(Canon, "select NAME_VIT_VIE, P_ID_VIT from KELORA_TREE order by ID_VIT"), "long,-1|middle,-1");
    EXPECT_EQ(Ask(Canon, "select NAME_VIC_PAL, NAME_VIC_VIE, NAME_VIC_ENG, ID_VIT from KELORA_CONTENT order by "
                         "NUMBER_VIC"),
              "Dutiyaṃ,Dutiyaṃ,null,1|Dasamaṃ,Thứ mười,null,1|m1,m1,null,2")
        << "k2 before k10; a heading of the mark-up, else the first head, else the file's name";
    ExpectParts(Page("PAL", 2), {"<header><p>Dīgho </p><h1>Dasamaṃ </h1></header><p>Ekaṃ &lt;b&gt;. Dve. </p>",
                                 "Segoe UI", "150%", "charset=utf-8"});
    EXPECT_THAT(Page("PAL", 1), HasSubstr("<h1>Dutiyaṃ</h1>\r\n<p>Tīṇi.</p>"));
    ExpectParts(Page("PAL_VIE", 2),
                {"<td lang=\"pi\"><p>Ekaṃ &lt;b&gt;. </p></td><td lang=\"vi\"><p>Một &quot;&amp;&quot;.",
                 "<td lang=\"pi\"><p>Dve. </p></td><td lang=\"vi\"><p></p></td>"});
    EXPECT_THAT(Page("PAL_VIE", 3), HasSubstr("<td lang=\"en\"><p>Four."));
    EXPECT_EQ(Page("PAL_VIE", 1), "null");

    // The other translator; keys stay with their texts when the collection grows.
    const char *const key = "select ID_VIC from KELORA_CONTENT where NAME_VIC_PAL = 'Dasamaṃ'";
    const std::string before = Ask(Canon, key);
    Put(u"source/root/pli/ms/long/k1_root-pli-ms.json"_s, "{\"k1:1.1\":\"Ekaṃ.\"}");
    Run(0, "import canon source --into K.FDB --author binh");
    EXPECT_THAT(Page("VIE", 3), HasSubstr("Bình."));
    EXPECT_EQ(Ask(Canon, key), before);
}

TEST_F(CanonTransfer, ATextWithoutARootStandsAmongItsOwn)
{
    PutSegmented();
    Put(u"source/translation/en/bo/middle/m2_translation-en-bo.json"_s, R"({"m2:0.1":"Two","m2:1.0":"Sub"})");
    Put(u"source/html/pli/ms/middle/m2_html.json"_s,
        R"({"m2:0.1":"<header><h1>{}</h1></header>","m2:1.0":"<h2>{}</h2>"})");
    Run(0, ImportSource);
    EXPECT_EQ(Ask(Canon, "select NAME_VIT_VIE from KELORA_TREE order by ID_VIT"), "long|middle");
    EXPECT_EQ(Ask(Canon, "select NAME_VIC_PAL, ID_VIT from KELORA_CONTENT where NUMBER_VIC = 4"), "Two,2");
}

TEST_F(CanonTransfer, WhatIsNotTakenIsToldWithItsPlace)
{
    PutSegmented();
    const QString root = u"source/root/pli/ms/"_s;
    Put(root + u"long/bad_root-pli-ms.json"_s, "{\"a:1\":\"x\",\n\"a:2\":[[]]}");
    Put(root + u"middle/k2_root-pli-ms.json"_s, "{}");
    Put(root + u"long/latin.json"_s, "{\"a:1\":\"caf\xE9\"}");
    Put(root + u"long/wide.json"_s, QByteArray("\xFF\xFE{\0\"\0a\0\"\0:\0\"\0x\0\"\0}\0", 20));
    Put(root + u"long/twice.json"_s, "{\"a:1\":\"x\",\"a:1\":\"y\"}");
    Put(u"source/translation/de/c/long/k2.json"_s, "{\"k2:1.1\":\"Drei.\"}");
    Put(u"source/html/gone.json"_s, "{}");
    Put(u"outside.json"_s, "{\"a:1\":\"secret\"}");
    QFile::link(Path(u"outside.json"_s), Path(root + u"long/link.json"_s));
    QFile::link(Path(), Path(root + u"loop"_s));
    EXPECT_EQ(::mkfifo(qPrintable(Path(root + u"pipe.json"_s)), 0600), 0);
    ExpectParts(
        Run(1, ImportSource),
        {"root/pli/ms/long/bad_root-pli-ms.json:2: the value of \"a:2\" is no text; not taken",
         "root/pli/ms/middle/k2_root-pli-ms.json: the id \"k2\" is that of root/pli/ms/long/k2_root-pli-ms.json too",
         "root/pli/ms/long/latin.json: is not UTF-8 at byte 11; not taken",
         "root/pli/ms/long/wide.json: converted from UTF-16",
         "root/pli/ms/long/twice.json: the segment \"a:1\" comes again; not taken",
         "translation/de: none of the languages Pāli, Vietnamese, English: 1 texts not taken",
         "html/gone.json: the mark-up of a text that is not there",
         "root/pli/ms/long/link.json: is a link that leads out of the folder; not read",
         "root/pli/ms/loop: is a link to a folder; not read", "root/pli/ms/pipe.json: is no regular file; not read"});
    Run(0, "check K.FDB");
}

TEST_F(CanonTransfer, AFolderOfPagesIsTakenByItsTable)
{
    const QByteArray table = "kind,key,group,pali,vietnamese,english,page_pali,page_vietnamese,page_english\n"
                             "group,1,,Vaggo,\"Phẩm \"\"một\"\"\",,,,\n"
                             "text,1500,1,Paṭhamaṃ,Thứ nhất,,a.html,b.txt,c.md\n"
                             "text,,,\"LONG\",,,../outside.html,gone.html,a.bin\n"
                             "text,no,1,x,,,,,\nsong,1,1,x,,,,,\n";
    Put(u"source/canon.csv"_s, QByteArray(table).replace("LONG", QByteArray(200, 'x')));
    Put(u"source/a.html"_s, "<html><head><meta charset=big5><title>t</title></head><body onload=x><p>Ādi</p></body>");
    Put(u"source/b.txt"_s, "một <1>\r\nhai\r\n\r\nba");
    Put(u"source/c.md"_s, "# Head\n\n*a* [b](javascript:x) <script>c</script>\n");
    Put(u"source/a.bin"_s, "x");
    ExpectParts(Run(1, ImportSource),
                {"5 rows read, 2 rows left out", "../outside.html: this name leads out of the folder",
                 "gone.html: there is no such file", "a.bin: is neither .html, .txt nor .md",
                 "canon.csv:5: key is \"no\", no number", "canon.csv:6: kind is \"song\"", "is cut to 127 characters"});
    Run(0, "check K.FDB");
    EXPECT_EQ(Ask(Canon, "select ID_VIT, NUMBER_VIC, NAME_VIC_VIE from KELORA_CONTENT where ID_VIC = 1500"),
              "1,1,Thứ nhất");
    ExpectParts(Page("PAL", 1),
                {"<html><head>\r\n<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\" />\r\n<style>",
                 "</style>\r\n<title>t\u00A0</title></head><body><p>Ādi</p>"});
    EXPECT_THAT(Page("VIE", 1), HasSubstr("<p>một &lt;1&gt;<br>\r\nhai</p>\r\n<p>ba</p>"));
    EXPECT_THAT(Page("ENG", 1), HasSubstr("<h1>Head</h1>\n<p><em>a</em> <a>b</a> </p>"));
}

TEST_F(CanonTransfer, ATableOfJsonAndKeysAtTheEndOfTheNumbers)
{
    Put(u"source/canon.json"_s, R"({"groups":[{"key":2147483647,"pali":"G"}],"texts":[7,{"key":5,"pali":"T"}]})");
    ExpectParts(Run(1, ImportSource), {"canon.json: text 1: is no object; not taken",
                                       "group 2147483647: 1000 + ID_VIT is 2147484647, more than a number can be"});
    EXPECT_EQ(Ask(Canon, "select ID_VIC, ID_VIT from KELORA_CONTENT"), "5,1");
}

TEST_F(CanonTransfer, AnImportOfAnExportGivesTheSameRows)
{
    QFile::copy(ProductFolder() + u"KELORA.FDB"_s, Path(u"SAMPLE.FDB"_s));
    PutSegmented();
    Run(0, ImportSource);
    for (const char *const format : {"folder", "segmented"}) {
        for (const char *const file : {"SAMPLE.FDB", "K.FDB"}) {
            Run(0, "export canon --out out --format "s + format + " --file " + file);
            Run(0, "import canon out --into BACK.FDB");
            EXPECT_TRUE(AllOf(u"BACK.FDB"_s) == AllOf(QString::fromLatin1(file))) << format << file;
        }
    }
    EXPECT_EQ(Names(u"out/root/pli"_s), (QStringList{u"1 long"_s, u"2 middle"_s}));
    // What an import would never make comes back too.
    Put(u"source/canon.csv"_s, "kind,key,group,number,pali,vietnamese,english,page_pali,page_english,finished\n"
                               "group,7,9,,\"\",\" a\n\"\"b\",,,,1\n"
                               "text,4,7,,\"\",,\"\",\"\",raw.html,1\n");
    Put(u"source/raw.html"_s, QByteArray("\r\n\xFF\0<script>\n", 13));
    Run(1, ImportSource); // a check would not pass it
    const char *const odd = "select NAME_VIC_PAL, NAME_VIC_VIE, NUMBER_VIC, CONTENT_VIC_PAL, CONTENT_VIC_VIE, "
                            "CONTENT_VIC_ENG from KELORA_CONTENT";
    EXPECT_EQ(Ask(Canon, odd), ",null,null,,null,\r\n\xFF\0<script>\n"s);
    Run(0, "export canon --file K.FDB --out out");
    const std::string before = AllOf(Canon);
    Run(1, "import canon out --into K.FDB");
    EXPECT_EQ(AllOf(Canon), before);
    EXPECT_FALSE(Names(u"out"_s).contains(u"root"_s)) << "an export replaces the older one as a whole";
}

TEST_F(CanonTransfer, AFailureLeavesTheOldFileAndForeignFolders)
{
    PutSegmented();
    Run(0, ImportSource);
    const QByteArray old = Bytes(Canon);
    Put(u"mine/notes.txt"_s, "mine");
    Put(u"broken/canon.csv"_s, "kind,pali\ntext,\"open\n");
    Put(u"nonsense.fdb"_s, QByteArray(100000, 'x'));
    Put(u"empty/root/a.json"_s, "{\"a:1\":[]}");
    for (const std::string &source : {"broken"s, "nonsense.fdb"s, "none"s, "empty"s})
        EXPECT_THAT(Run(2, "import canon --into K.FDB " + source), HasSubstr(source == "empty" ? "a.json:1" : source));
    QFile::setPermissions(Path(Canon), QFile::ReadOwner);
    EXPECT_THAT(Run(2, ImportSource), HasSubstr("K.FDB: is read-only"));
    EXPECT_EQ(::mkfifo(qPrintable(Path(u"pipe"_s)), 0600), 0);
    EXPECT_THAT(Run(2, "import canon source --into pipe"), HasSubstr("pipe: is no regular file"));
    Run(2, "import canon source --into K.FDB --client K.FDB"); // no file of marks
    Run(2, "import canon source --into K.FDB --repair");
    Run(2, "export canon --file K.FDB --out mine");
    EXPECT_TRUE(Bytes(Canon) == old);
    EXPECT_EQ(Bytes(u"mine/notes.txt"_s), "mine");
    EXPECT_EQ(Unfinished(), QStringList());
}

TEST_F(CanonTransfer, ACopyIsCheckedAndMendedOnlyWhenAsked)
{
    // A file with faults of every kind that can be mended.
    Put(u"source/canon.csv"_s, "kind,key,group,number,pali,vietnamese,english,page_pali,page_english,finished\n"
                               "group,1,2,,a,a,,,,1\ngroup,2,1,,b,b,\"\",,,1\ngroup,3,9,,c,c,,,,1\n"
                               "text,1500,1,,t,t,,a.html,,1\ntext,1600,3,4,u,u,,,b.html,1\n");
    Put(u"source/a.html"_s, "<html><head><title>Ā</title>");
    Put(u"source/b.html"_s, "<meta content='text/html; charset=windows-1258'>ộ");
    Run(1, ImportSource);
    const std::string before = AllOf(Canon);
    EXPECT_EQ(Run(1, "check K.FDB"), "group 3: the parent group 9 does not exist\n"
                                     "group 1: is its own ancestor\n"
                                     "group 2: is its own ancestor\n"
                                     "text 1500 of group 1: NUMBER_VIC is null\n"
                                     "text 1600 of group 3: NUMBER_VIC is 4, and 1 to 3 are missing before it\n"
                                     "group 2: NAME_VIT_ENG is empty\n"
                                     "text 1500 of group 1: CONTENT_VIC_PAL names no charset\n"
                                     "text 1600 of group 3: CONTENT_VIC_ENG names the charset windows-1258\n"
                                     "3 groups, 2 texts: 8 findings\n");
    {
        const FullDisk full(1'000'000);
        EXPECT_THAT(Run(2, "import canon K.FDB --into COPY.FDB"),
                    HasSubstr("K.FDB: there is no room for a temporary copy"));
    }
    Run(1, "import canon K.FDB --into COPY.FDB");
    EXPECT_FALSE(Names().contains(u"COPY.FDB"_s));
    EXPECT_THAT(Run(0, "import canon K.FDB --into COPY.FDB --repair"),
                HasSubstr("group 3: put at the root: its parent is missing"));
    Run(0, "check COPY.FDB");
    EXPECT_EQ(AllOf(Canon), before);
    EXPECT_EQ(Ask(u"COPY.FDB"_s, "select ID_VIT, P_ID_VIT from KELORA_TREE order by 1"), "1,-1|2,1|3,-1");
    EXPECT_EQ(Ask(u"COPY.FDB"_s, "select ID_VIC, NUMBER_VIC, CONTENT_VIC_ENG from KELORA_CONTENT order by 1"),
              "1500,2,null|1600,1,<meta content='text/html; charset=utf-8'>ộ");
    Run(0, "import canon COPY.FDB --into SECOND.FDB");
    EXPECT_EQ(AllOf(u"SECOND.FDB"_s), AllOf(u"COPY.FDB"_s));
}

TEST_F(CanonTransfer, AMarkOnAnImportedTextIsShown)
{
    PutSegmented();
    Run(0, "build marks --out .");
    AppPath = Path() + u'/';
    for (const QString &name : {u"libfbclient.so.2"_s, u"firebird"_s})
        QFile::link(ProductFolder() + name, Path(name));
    ModuleDoors doors;
    doors.exeName = Path(u"Lumivara"_s);
    doors.now = [] { return QDateTime(QDate(2024, 2, 29), QTime(12, 0)); };
    TfrmClientsDM module(doors);
    module.DataModuleCreate();
    ASSERT_TRUE(module.vIsOKClients);
    // The program has the file open; what it has listed itself stays.
    OpenedDatabase client(Path(u"TARUNECLIENT.FDB"_s));
    client.Execute(u"insert into SUTTA_LIST values (6, 1101, 'Chương', null, null, null)"_s);
    const char *const import = "import canon source --into K.FDB --client TARUNECLIENT.FDB";
    EXPECT_THAT(Run(0, import), HasSubstr("3 texts added to the list"));
    EXPECT_THAT(Run(0, import), HasSubstr("0 texts added"));
    const QString key = QString::fromStdString(Ask(Canon, "select ID_VIC from KELORA_CONTENT where NUMBER_VIC = 2"));
    client.Execute(u"insert into SUTTA_TEXT_FOCUS (ID_FOC, NIK_SUT, NIC_SUT) values (1, 6, %1)"_s.arg(key));
    module.qryFocus.Open();
    EXPECT_TRUE(module.qryFocus.Locate(u"NIC_SUT"_s, key.toInt())) << "a mark on a text without a row is not shown";
    EXPECT_EQ(module.qryFocus.FieldByName(u"NAME_SUT_VIE"_s).AsString(), u"Thứ mười"_s);
    AppPath.clear();
}

} // namespace
