#include "presentation/GlobalUnit.h"
#include "stores/ClientsDM.h"
#include "support/TestSupport.h"
#include "tools/ToolSupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <gmock/gmock.h>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

using Rows = QList<QList<QVariant>>;

/// A folder with what is imported ("source") and the files that come of it.
class CanonTransfer : public testing::Test
{
protected:
    QString Path(const QString &name) const { return m_scratch.Path(name); }
    QString Canon() const { return Path(u"K.FDB"_s); }
    void Put(const QString &name, const QByteArray &bytes) const { WriteFile(Path(u"source/"_s + name), bytes); }
    ToolRun Import(const QStringList &more = {}, const QString &source = u"source"_s) const
    {
        return RunDataTool(QStringList{u"import"_s, u"canon"_s, Path(source), u"--into"_s, Canon()} + more);
    }
    static int Check(const QString &path) { return RunDataTool({u"check"_s, path}).exitCode; }
    static Rows AllOf(const QString &path)
    {
        OpenedDatabase file(path);
        return file.Rows(u"select * from KELORA_TREE order by 1"_s) +
               file.Rows(u"select * from KELORA_CONTENT order by 1, 2"_s);
    }
    Rows Ask(const QString &select) const { return OpenedDatabase(Canon()).Rows(select); }
    QString Page(const QString &column, const QString &where) const
    {
        const Rows rows = Ask(u"select %1 from KELORA_CONTENT where %2"_s.arg(column, where));
        return rows.size() == 1 ? QString::fromUtf8(rows[0][0].toByteArray()) : u"%1 rows"_s.arg(rows.size());
    }
    /// Two groups of segmented texts in three languages.
    void PutSegmented() const
    {
        Put(u"root/pli/ms/long/k10_root-pli-ms.json"_s,
            "{\"k10:0.1\":\"Dīgho \",\"k10:0.2\":\"Dasamaṃ \",\"k10:1.1\":\"Ekaṃ <b>. \",\"k10:1.2\":\"Dve. \"}");
        Put(u"root/pli/ms/long/k2_root-pli-ms.json"_s, "\xEF\xBB\xBF{\"k2:0.1\":\"Dutiyaṃ\",\"k2:1.1\":\"Tīṇi.\"}");
        Put(u"root/pli/ms/middle/m1_root-pli-ms.json"_s, "{\"m1:1.1\":\"Cattāri.\"}");
        Put(u"translation/vi/an/long/k10_translation-vi-an.json"_s,
            "{\"k10:0.2\":\"Thứ mười\",\"k10:1.1\":\"Một \\\"&\\\".\",\"k10:1.3\":\"Thêm.\"}");
        Put(u"translation/vi/binh/long/k10_translation-vi-binh.json"_s, "{\"k10:1.1\":\"Bình.\"}");
        Put(u"translation/en/bo/middle/m1_translation-en-bo.json"_s, "{\"m1:1.1\":\"Four.\"}");
        Put(u"html/pli/ms/long/k10_html.json"_s,
            "{\"k10:0.1\":\"<header><p>{}</p>\",\"k10:0.2\":\"<h1>{}</h1></header>\",\"k10:1.1\":\"<p "
            "onclick='x'>{}\",\"k10:1.2\":\"{}</p><script>x</script>\"}");
    }

    ScratchFolder m_scratch;
};

TEST_F(CanonTransfer, SegmentedTextsBecomePagesAndAParallelTable)
{
    PutSegmented();
    const ToolRun run = Import({u"--json"_s});
    EXPECT_EQ(run.exitCode, 0) << qPrintable(run.output + run.errors);
    EXPECT_EQ(Check(Canon()), 0);
    const QJsonObject report = QJsonDocument::fromJson(run.output.toUtf8()).object();
    EXPECT_EQ(report[u"counts"_s][u"texts"_s].toInt(), 3);
    EXPECT_EQ(report[u"noteCount"_s].toInt(), 1) << "the second translator is told";

    EXPECT_EQ(Ask(u"select NAME_VIT_VIE, P_ID_VIT from KELORA_TREE order by ID_VIT"_s),
              (Rows{{u"long"_s, -1}, {u"middle"_s, -1}}));
    EXPECT_EQ(
        Ask(u"select NAME_VIC_PAL, NAME_VIC_VIE, NAME_VIC_ENG, ID_VIT from KELORA_CONTENT order by NUMBER_VIC"_s),
        (Rows{{u"Dutiyaṃ"_s, u"Dutiyaṃ"_s, {}, 1}, {u"Dasamaṃ"_s, u"Thứ mười"_s, {}, 1}, {u"m1"_s, u"m1"_s, {}, 2}}))
        << "k2 before k10; a heading of the mark-up, else the first head, else the file's name";

    const QString pali = Page(u"CONTENT_VIC_PAL"_s, u"NUMBER_VIC = 2"_s);
    EXPECT_TRUE(pali.contains(u"<header><p>Dīgho </p><h1>Dasamaṃ </h1></header><p>Ekaṃ &lt;b&gt;. Dve. </p>"_s))
        << qPrintable(pali);
    EXPECT_TRUE(pali.contains(u"Segoe UI"_s) && pali.contains(u"150%"_s) && pali.contains(u"charset=utf-8"_s));
    EXPECT_TRUE(Page(u"CONTENT_VIC_PAL"_s, u"NUMBER_VIC = 1"_s).contains(u"<h1>Dutiyaṃ</h1>\r\n<p>Tīṇi.</p>"_s));
    const QString parallel = Page(u"CONTENT_VIC_PAL_VIE"_s, u"NUMBER_VIC = 2"_s);
    EXPECT_TRUE(
        parallel.contains(u"<td lang=\"pi\"><p>Ekaṃ &lt;b&gt;. </p></td><td lang=\"vi\"><p>Một &quot;&amp;&quot;."_s))
        << qPrintable(parallel);
    EXPECT_TRUE(parallel.contains(u"<td lang=\"pi\"><p>Dve. </p></td><td lang=\"vi\"><p></p></td>"_s));
    EXPECT_TRUE(Page(u"CONTENT_VIC_PAL_VIE"_s, u"NUMBER_VIC = 3"_s).contains(u"<td lang=\"en\"><p>Four."_s));
    EXPECT_TRUE(Ask(u"select CONTENT_VIC_PAL_VIE from KELORA_CONTENT where NUMBER_VIC = 1"_s)[0][0].isNull());

    // The other translator; keys stay with their texts when the collection grows.
    const Rows keys = Ask(u"select ID_VIC from KELORA_CONTENT where NAME_VIC_PAL = 'Dasamaṃ'"_s);
    Put(u"root/pli/ms/long/k1_root-pli-ms.json"_s, "{\"k1:1.1\":\"Ekaṃ.\"}");
    EXPECT_EQ(Import({u"--author"_s, u"binh"_s}).exitCode, 0);
    EXPECT_TRUE(Page(u"CONTENT_VIC_VIE"_s, u"NUMBER_VIC = 3"_s).contains(u"Bình."_s));
    EXPECT_EQ(Ask(u"select ID_VIC from KELORA_CONTENT where NAME_VIC_PAL = 'Dasamaṃ'"_s), keys);
}

TEST_F(CanonTransfer, WhatIsNotTakenIsToldWithItsPlace)
{
    PutSegmented();
    Put(u"root/pli/ms/long/bad_root-pli-ms.json"_s, "{\"a:1\":\"x\",\n\"a:2\":[[]]}");
    Put(u"root/pli/ms/middle/k2_root-pli-ms.json"_s, "{}");
    Put(u"root/pli/ms/long/latin.json"_s, "{\"a:1\":\"caf\xE9\"}");
    Put(u"root/pli/ms/long/wide.json"_s, QByteArray("\xFF\xFE", 2) + QByteArray("{\0\"\0a\0:\0"
                                                                                "1\0\"\0:\0\"\0x\0\"\0}\0",
                                                                                20));
    Put(u"root/pli/ms/long/twice.json"_s, "{\"a:1\":\"x\",\"a:1\":\"y\"}");
    Put(u"translation/de/c/long/k2.json"_s, "{\"k2:1.1\":\"Drei.\"}");
    Put(u"html/gone.json"_s, "{}");
    WriteFile(Path(u"outside.json"_s), "{\"a:1\":\"secret\"}");
    QFile::link(Path(u"outside.json"_s), Path(u"source/root/pli/ms/long/link.json"_s));
    QFile::link(Path(u""_s), Path(u"source/root/pli/ms/loop"_s));
    EXPECT_EQ(::mkfifo(qPrintable(Path(u"source/root/pli/ms/pipe.json"_s)), 0600), 0);
    const ToolRun run = Import();
    EXPECT_EQ(run.exitCode, 1) << qPrintable(run.errors);
    for (
        const QString &line :
        {u"root/pli/ms/long/bad_root-pli-ms.json:2: the value of \"a:2\" is no text; not taken"_s,
         u"root/pli/ms/middle/k2_root-pli-ms.json: the id \"k2\" is that of root/pli/ms/long/k2_root-pli-ms.json too"_s,
         u"root/pli/ms/long/latin.json: is not UTF-8 at byte 11; not taken"_s,
         u"root/pli/ms/long/wide.json: converted from UTF-16"_s,
         u"root/pli/ms/long/twice.json: the segment \"a:1\" comes again; not taken"_s,
         u"translation/de: none of the languages Pāli, Vietnamese, English: 1 texts not taken"_s,
         u"html/gone.json: the mark-up of a text that is not there"_s,
         u"root/pli/ms/long/link.json: is a link that leads out of the folder; not read"_s,
         u"root/pli/ms/loop: is a link to a folder; not read"_s,
         u"root/pli/ms/pipe.json: is no regular file; not read"_s})
        EXPECT_TRUE(run.output.contains(line)) << qPrintable(line + u"\n"_s + run.output);
    EXPECT_EQ(Check(Canon()), 0);
}

TEST_F(CanonTransfer, AFolderOfPagesIsTakenByItsTable)
{
    Put(u"canon.csv"_s, "kind,key,group,pali,vietnamese,english,page_pali,page_vietnamese,page_english\n"
                        "group,1,,Vaggo,\"Phẩm \"\"một\"\"\",,,,\n"
                        "text,1500,1,Paṭhamaṃ,Thứ nhất,,a.html,b.txt,c.md\n"
                        "text,,,\"" +
                            QByteArray(200, 'x') +
                            "\",,,../outside.html,gone.html,a.bin\n"
                            "text,no,1,x,,,,,\n"
                            "song,1,1,x,,,,,\n");
    Put(u"a.html"_s, "<html><head><meta charset=big5><title>t</title></head><body onload=x><p>Ādi</p></body></html>");
    Put(u"b.txt"_s, "một <1>\r\nhai\r\n\r\nba");
    Put(u"c.md"_s, "# Head\n\n*a* [b](javascript:x) <script>c</script>\n");
    Put(u"a.bin"_s, "x");
    const ToolRun run = Import();
    EXPECT_EQ(run.exitCode, 1);
    for (const QString &line :
         {u"../outside.html: this name leads out of the folder"_s, u"gone.html: there is no such file"_s,
          u"a.bin: is neither .html, .txt nor .md"_s, u"canon.csv:5: key is \"no\", no number"_s,
          u"canon.csv:6: kind is \"song\""_s, u"is cut to 127 characters"_s})
        EXPECT_TRUE(run.output.contains(line)) << qPrintable(line + u"\n"_s + run.output);
    EXPECT_EQ(Check(Canon()), 0);
    EXPECT_EQ(Ask(u"select ID_VIC, ID_VIT, NUMBER_VIC, NAME_VIC_VIE from KELORA_CONTENT where ID_VIC = 1500"_s),
              (Rows{{1500, 1, 1, u"Thứ nhất"_s}}));
    const QString first = u"ID_VIC = 1500"_s;
    const QString html = Page(u"CONTENT_VIC_PAL"_s, first);
    EXPECT_TRUE(
        html.contains(u"<head>\r\n<meta http-equiv=\"Content-Type\" content=\"text/html; charset=utf-8\" />"_s));
    EXPECT_TRUE(html.contains(u"<body><p>Ādi</p>"_s) && !html.contains(u"big5"_s)) << qPrintable(html);
    EXPECT_TRUE(Page(u"CONTENT_VIC_VIE"_s, first).contains(u"<p>một &lt;1&gt;<br>\r\nhai</p>\r\n<p>ba</p>"_s));
    EXPECT_TRUE(Page(u"CONTENT_VIC_ENG"_s, first).contains(u"<h1>Head</h1>\n<p><em>a</em> <a>b</a> </p>"_s))
        << qPrintable(Page(u"CONTENT_VIC_ENG"_s, first));
}

TEST_F(CanonTransfer, AnImportOfAnExportGivesTheSameRows)
{
    const QString sample = ProductFolder() + u"KELORA.FDB"_s;
    PutSegmented();
    ASSERT_EQ(Import().exitCode, 0);
    for (const QString &format : {u"folder"_s, u"segmented"_s}) {
        for (const QString &source : {sample, Canon()}) {
            const QString back = Path(u"BACK.FDB"_s), out = Path(u"out"_s);
            const ToolRun run =
                RunDataTool({u"export"_s, u"canon"_s, u"--file"_s, source, u"--out"_s, out, u"--format"_s, format});
            EXPECT_EQ(run.exitCode, 0) << qPrintable(run.errors);
            EXPECT_EQ(RunDataTool({u"import"_s, u"canon"_s, out, u"--into"_s, back}).exitCode, 0);
            EXPECT_TRUE(AllOf(back) == AllOf(source)) << qPrintable(format + source);
        }
    }
    EXPECT_EQ(QDir(Path(u"out/root/pli"_s)).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
              (QStringList{u"1 long"_s, u"2 middle"_s}));
    // What an import would never make comes back too.
    Put(u"canon.csv"_s, "kind,key,group,number,pali,vietnamese,english,page_pali,page_english,finished\n"
                        "group,7,9,,\"\",\" a\n\"\"b\",,,,1\n"
                        "text,4,7,,\"\",,\"\",\"\",raw.html,1\n");
    Put(u"raw.html"_s, QByteArray("\r\n\xFF\0<script>\n", 13));
    EXPECT_EQ(Import().exitCode, 1) << "a check would not pass it";
    EXPECT_EQ(
        Ask(u"select NAME_VIC_PAL, NAME_VIC_VIE, NUMBER_VIC, CONTENT_VIC_PAL, CONTENT_VIC_VIE, CONTENT_VIC_ENG from "
            "KELORA_CONTENT"_s),
        (Rows{{u""_s, {}, {}, QByteArray(""), {}, QByteArray("\r\n\xFF\0<script>\n", 13)}}));
    EXPECT_EQ(RunDataTool({u"export"_s, u"canon"_s, u"--file"_s, Canon(), u"--out"_s, Path(u"out"_s)}).exitCode, 0);
    const Rows before = AllOf(Canon());
    EXPECT_EQ(Import({}, u"out"_s).exitCode, 1);
    EXPECT_TRUE(AllOf(Canon()) == before);
    EXPECT_FALSE(QFileInfo::exists(Path(u"out/root"_s))) << "an export replaces the older one as a whole";
}

TEST_F(CanonTransfer, AFailureLeavesTheOldFileAndForeignFolders)
{
    PutSegmented();
    ASSERT_EQ(Import().exitCode, 0);
    const QByteArray old = BytesOf(Canon());
    WriteFile(Path(u"mine/notes.txt"_s), "mine");
    WriteFile(Path(u"broken/canon.csv"_s), "kind,pali\ntext,\"open\n");
    WriteFile(Path(u"nonsense.fdb"_s), QByteArray(100000, 'x'));
    QDir().mkpath(Path(u"empty"_s));
    for (const QString &source : {u"broken"_s, u"nonsense.fdb"_s, u"empty"_s, u"none"_s}) {
        const ToolRun run = Import({}, source);
        EXPECT_EQ(run.exitCode, 2) << qPrintable(source);
        EXPECT_TRUE(run.errors.contains(source)) << qPrintable(run.errors);
    }
    EXPECT_EQ(Import({u"--client"_s, Canon()}).exitCode, 2) << "no file of marks";
    EXPECT_EQ(Import({u"--repair"_s}).exitCode, 2);
    EXPECT_EQ(RunDataTool({u"export"_s, u"canon"_s, u"--file"_s, Canon(), u"--out"_s, Path(u"mine"_s)}).exitCode, 2);
    EXPECT_TRUE(BytesOf(Canon()) == old);
    EXPECT_EQ(BytesOf(Path(u"mine/notes.txt"_s)), "mine");
    EXPECT_THAT(QDir(Path(u""_s)).entryList({u"*.part*"_s}, QDir::AllEntries), testing::IsEmpty());
}

TEST_F(CanonTransfer, ACopyIsCheckedAndMendedOnlyWhenAsked)
{
    PutSegmented();
    ASSERT_EQ(Import().exitCode, 0);
    const QString copy = Path(u"COPY.FDB"_s);
    const auto import = [&](const QStringList &more = {}) {
        return RunDataTool(QStringList{u"import"_s, u"canon"_s, Canon(), u"--into"_s, copy} + more);
    };
    EXPECT_EQ(import().exitCode, 0);
    EXPECT_TRUE(AllOf(copy) == AllOf(Canon()));
    QFile::remove(copy);

    // A file with faults of every kind that can be mended; made anew because a finished one is in read-only mode.
    const QString odd = u"source2"_s;
    WriteFile(Path(odd + u"/canon.csv"_s),
              "kind,key,group,number,pali,vietnamese,english,page_pali,page_english,finished\n"
              "group,1,2,,a,a,,,,1\ngroup,2,1,,b,b,\"\",,,1\ngroup,3,9,,c,c,,,,1\n"
              "text,1500,1,,t,t,,a.html,,1\ntext,1600,3,4,u,u,,,b.html,1\n");
    WriteFile(Path(odd + u"/a.html"_s), "<html><head><title>Ā</title>");
    WriteFile(Path(odd + u"/b.html"_s), "<meta content='text/html; charset=windows-1258'>ộ");
    ASSERT_EQ(Import({}, odd).exitCode, 1);
    const Rows before = AllOf(Canon());
    EXPECT_EQ(import().exitCode, 1);
    EXPECT_FALSE(QFileInfo::exists(copy));
    const ToolRun run = import({u"--repair"_s});
    EXPECT_EQ(run.exitCode, 0) << qPrintable(run.output + run.errors);
    EXPECT_TRUE(run.output.contains(u"group 3: put at the root: its parent is missing"_s)) << qPrintable(run.output);
    EXPECT_EQ(Check(copy), 0);
    EXPECT_TRUE(AllOf(Canon()) == before) << "the source is left alone";
    OpenedDatabase mended(copy);
    EXPECT_EQ(mended.Rows(u"select ID_VIT, P_ID_VIT from KELORA_TREE order by 1"_s), (Rows{{1, -1}, {2, 1}, {3, -1}}));
    EXPECT_EQ(mended.Rows(u"select ID_VIC, NUMBER_VIC from KELORA_CONTENT order by 1"_s), (Rows{{1500, 2}, {1600, 1}}));
    EXPECT_EQ(mended.Rows(u"select CONTENT_VIC_ENG from KELORA_CONTENT where ID_VIC = 1600"_s)[0][0].toByteArray(),
              "<meta content='text/html; charset=utf-8'>ộ");
}

TEST_F(CanonTransfer, AMarkOnAnImportedTextIsShown)
{
    PutSegmented();
    const QString client = Path(u"TARUNECLIENT.FDB"_s);
    ASSERT_EQ(RunDataTool({u"build"_s, u"marks"_s, u"--out"_s, Path(u""_s)}).exitCode, 0);
    AppPath = Path(u""_s) + u'/';
    for (const char16_t *name : {u"libfbclient.so.2", u"firebird"})
        QFile::link(ProductFolder() + QString::fromUtf16(name), Path(QString::fromUtf16(name)));
    ModuleDoors doors;
    doors.exeName = Path(u"Lumivara"_s);
    doors.now = [] { return QDateTime(QDate(2024, 2, 29), QTime(12, 0)); };
    TfrmClientsDM module(doors);
    module.DataModuleCreate();
    ASSERT_TRUE(module.vIsOKClients);
    // The program has the file open; what it has listed itself stays.
    OpenedDatabase(client).RunScript(u"insert into SUTTA_LIST values (6, 1101, 'Chương', null, null, null); commit;"_s);
    const ToolRun run = Import({u"--client"_s, client});
    EXPECT_EQ(run.exitCode, 0) << qPrintable(run.errors);
    EXPECT_TRUE(run.output.contains(u"3 texts added to the list"_s)) << qPrintable(run.output);
    EXPECT_TRUE(Import({u"--client"_s, client}).output.contains(u"0 texts added"_s));

    const int key = Ask(u"select ID_VIC from KELORA_CONTENT where NUMBER_VIC = 2"_s)[0][0].toInt();
    module.qryFocus.Open();
    module.qryFocus.Insert();
    module.qryFocus.FieldByName(u"NAME_FOC"_s).SetAsString(u"một đoạn"_s);
    module.qryFocus.FieldByName(u"NIK_SUT"_s).SetAsInteger(6);
    module.qryFocus.FieldByName(u"NIC_SUT"_s).SetAsInteger(key);
    module.qryFocus.Post();
    module.qryFocus.Close();
    module.qryFocus.Open();
    EXPECT_TRUE(module.qryFocus.Locate(u"NIC_SUT"_s, key)) << "a mark whose text is not in the list is not shown";
    EXPECT_EQ(module.qryFocus.FieldByName(u"NAME_SUT_VIE"_s).AsString(), u"Thứ mười"_s);
    AppPath.clear();
}

} // namespace
