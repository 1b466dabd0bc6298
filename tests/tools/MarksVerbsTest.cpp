#include "support/FullDisk.h"
#include "tools/ToolSupport.h"

#include <QDate>
#include <QFile>

using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace {

const QString Marks = u"TARUNECLIENT.FDB"_s;

/// A delivered file of marks with three marks, and one of a text that its list does not have.
class MarksVerbs : public ToolTest
{
protected:
    void SetUp() override
    {
        Run(0, "build marks --out .");
        OpenedDatabase(Path(Marks))
            .RunScript(
                u"insert into SUTTA_LIST values (6, 1101, 'Chương <1>', 'Kaṇḍaṃ', null, null);"
                "insert into SUTTA_LIST values (2, 9, 'Kinh', null, null, null);"
                "insert into SUTTA_TEXT_FOCUS values (4, '\uFEFFHai, \"ba\"', '\uFEFF<p>một  <b>hai</b></p>\r\n"
                "<p>ba&nbsp;&lt;4</p>', 2, 'ghi *chú*' || ascii_char(13) || ascii_char(10) || 'dòng', 6, 1101, "
                "'2024-02-29 23:59:58', 'khóa');"
                "insert into SUTTA_TEXT_FOCUS values (7, null, null, 9, null, 6, 1101, null, null);"
                "insert into SUTTA_TEXT_FOCUS values (9, 'kinh', 'x', 4, null, 2, 9, '2024-03-01 00:00:00', null);"
                "insert into SUTTA_TEXT_FOCUS values (5, 'lạc', 'y', 1, null, 6, 9999, '2024-03-01 00:00:00', null);"_s);
    }
    std::string Backup(int exitCode, const std::string &more = "") const
    {
        return Run(exitCode, "backup marks --file TARUNECLIENT.FDB " + more);
    }
    std::string Export(const std::string &format) const
    {
        return Run(0, "export marks --file TARUNECLIENT.FDB --format " + format);
    }

    const QString m_backup = u"backup/TARUNECLIENT-%1.fbk"_s.arg(QDate::currentDate().toString(Qt::ISODate));
};

TEST_F(MarksVerbs, ABackupMadeWhileTheFileIsOpenComesBackWhole)
{
    const std::string all = "select * from SUTTA_TEXT_FOCUS order by 1";
    OpenedDatabase inUse(Path(Marks));
    Backup(0);
    Backup(0); // a second one of the day has a name of its own
    EXPECT_EQ(Names(u"backup"_s).size(), 2);
    Run(0, "restore --to RESTORED.FDB", {m_backup});
    OpenedDatabase restored(Path(u"RESTORED.FDB"_s));
    EXPECT_EQ(restored.Text(all), inUse.Text(all));
    EXPECT_EQ(restored.Text("select MON$FORCED_WRITES from MON$DATABASE"), "1");
    EXPECT_THROW(restored.Execute(u"insert into SUTTA_TEXT_FOCUS (ID_FOC) values (4)"_s), std::exception);
    // Nothing that exists is written over.
    const QByteArray saved = Bytes(m_backup), marks = Bytes(Marks);
    Backup(2, "--to " + m_backup.toStdString());
    Run(2, "restore --to TARUNECLIENT.FDB", {m_backup});
    EXPECT_TRUE(Bytes(m_backup) == saved && Bytes(Marks) == marks);
}

TEST_F(MarksVerbs, ADamagedBackupLeavesNothingBehind)
{
    Backup(0);
    const QByteArray whole = Bytes(m_backup);
    const QByteArray used = whole.left(whole.lastIndexOf('\n') + 1); // the engine fills up with zeros
    for (const QByteArray &bytes : {QByteArray(), QByteArray("no backup"), used.left(100), used.left(used.size() / 2),
                                    used.left(used.size() - 40), Bytes(Marks)}) {
        Put(u"damaged.fbk"_s, bytes);
        const QStringList before = Names();
        EXPECT_NE(Run(2, "restore damaged.fbk --to RESTORED.FDB"), "") << bytes.size();
        EXPECT_EQ(Names(), before) << bytes.size();
    }
}

TEST_F(MarksVerbs, DailyBackupsComeOnceADayAndSevenStay)
{
    QStringList kept{u"TARUNECLIENT-2020-01-01-2.fbk"_s, u"TARUNECLIENT-mine.fbk"_s, u"notes.txt"_s};
    for (const QString &name : std::as_const(kept))
        Put(u"backup/"_s + name, "mine");
    for (int day = 1; day <= 9; ++day) {
        const QString name = u"TARUNECLIENT-2020-01-0%1.fbk"_s.arg(day);
        Put(u"backup/"_s + name, "old");
        if (day > 3)
            kept.append(name);
    }
    Backup(0, "--daily");
    kept.append(m_backup.section(u'/', 1));
    EXPECT_THAT(Names(u"backup"_s), testing::UnorderedElementsAreArray(kept));
    const QByteArray first = Bytes(m_backup);
    OpenedDatabase(Path(Marks)).Execute(u"delete from SUTTA_TEXT_FOCUS"_s);
    Backup(0, "--daily");
    EXPECT_TRUE(Bytes(m_backup) == first);
}

TEST_F(MarksVerbs, AFailedBackupLeavesTheFolderAsItWas)
{
    OpenedDatabase(Path(Marks))
        .Execute(u"update SUTTA_TEXT_FOCUS set TEXT_FOC = (select list(rpad('x', 8000, 'y')) "
                 "from RDB$RELATION_FIELDS, RDB$DATABASE)"_s);
    {
        const FullDisk full(8 << 20);
        Backup(2, "--daily");
    }
    EXPECT_EQ(Names(u"backup"_s), QStringList());
    QFile::remove(Path(Marks));
    Put(Marks, "no database");
    Backup(2, "--daily");
    EXPECT_EQ(Names(u"backup"_s), QStringList());
}

TEST_F(MarksVerbs, ExportsHoldEveryMarkByText)
{
    EXPECT_EQ(Export("csv"),
              "ID_FOC,NIK_SUT,NIC_SUT,NAME_SUT_VIE,NAME_SUT_PAL,NAME_SUT_ENG,NAME_FOC,KEYWORD_FOC,PRIORITY_FOC,"
              "DATETIME_FOC,DESC_FOC,TEXT,TEXT_FOC\r\n"
              "9,2,9,\"Kinh\",\"\",\"\",\"kinh\",\"\",4,2024-03-01T00:00:00,\"\",\"x\",\"x\"\r\n"
              "4,6,1101,\"Chương <1>\",\"Kaṇḍaṃ\",\"\",\"Hai, \"\"ba\"\"\",\"khóa\",2,2024-02-29T23:59:58,"
              "\"ghi *chú*\r\ndòng\",\"một hai\nba\u00A0<4\",\"<p>một  <b>hai</b></p>\r\n<p>ba&nbsp;&lt;4</p>\"\r\n"
              "7,6,1101,\"Chương <1>\",\"Kaṇḍaṃ\",\"\",\"\",\"\",9,,\"\",\"\",\"\"\r\n"
              "5,6,9999,\"\",\"\",\"\",\"lạc\",\"\",1,2024-03-01T00:00:00,\"\",\"y\",\"y\"\r\n");
    EXPECT_THAT(Export("html"),
                HasSubstr("<h1>Chương &lt;1&gt; · Kaṇḍaṃ</h1>\n<h2>Hai, &quot;ba&quot;</h2>\n"
                          "<p><small>Cao · 2024-02-29 23:59 · khóa</small></p>\n"
                          "<blockquote>một hai<br>\nba\u00A0&lt;4</blockquote>\n<p>ghi *chú*<br>\ndòng</p>\n"));
    EXPECT_THAT(Export("markdown"), HasSubstr("# Chương \\<1\\> · Kaṇḍaṃ <!-- 6-1101 -->\n\n## Hai, \"ba\"\n\n"
                                              "Cao · 2024\\-02\\-29 23:59 · khóa\n\n"
                                              "> một hai  \n> ba\u00A0\\<4\n\nghi \\*chú\\*  \ndòng\n"));
    Run(2, "export marks --format pdf --file TARUNECLIENT.FDB");
}

TEST_F(MarksVerbs, CheckNamesWhatPutsMarksAtRisk)
{
    EXPECT_EQ(Run(1, "check TARUNECLIENT.FDB"),
              "mark 5: text 9999 of collection 6 is missing in the list, so the mark is never shown\n"
              "2 texts, 4 marks: 1 findings\n");
    OpenedDatabase(Path(Marks))
        .RunScript(u"alter table SUTTA_TEXT_FOCUS drop constraint PK_SUTTA_TEXT_FOCUS;"
                   "alter table SUTTA_LIST drop constraint PK_SUTTA_LIST; commit;"
                   "update SUTTA_TEXT_FOCUS set ID_FOC = 4 where ID_FOC in (5, 7);"
                   "update SUTTA_TEXT_FOCUS set NIC_SUT = 1101 where NIC_SUT = 9999;"
                   "insert into SUTTA_LIST values (2, 9, 'Kinh', null, null, null);"_s);
    QByteArray bytes = Bytes(Marks);
    constexpr int flags = 42; // of the header page; the bit asks for forced writes
    EXPECT_EQ(bytes[flags] & 2, 2) << "the file as built";
    bytes[flags] = static_cast<char>(bytes[flags] & ~2);
    Put(Marks, bytes);
    EXPECT_EQ(Run(1, "check TARUNECLIENT.FDB"),
              "the file: forced writes are off, a power cut may take marks with it\n"
              "text 9 of collection 2: stands in the list 2 times, and so does each of its marks\n"
              "mark 4: 3 have this key, so they can be neither changed nor deleted\n"
              "3 texts, 4 marks: 3 findings\n");
}

} // namespace
