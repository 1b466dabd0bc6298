#include "support/FullDisk.h"
#include "support/TestSupport.h"
#include "tools/ToolSupport.h"

#include <QDate>
#include <QDir>
#include <QFileInfo>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

const char16_t AllMarks[] =
    u"select F.ID_FOC, F.NAME_FOC, F.TEXT_FOC, F.DATETIME_FOC from SUTTA_TEXT_FOCUS F order by 1";

/// A delivered file of marks with three marks, and one of a text that its list does not have.
class MarksVerbs : public testing::Test
{
protected:
    void SetUp() override
    {
        const ToolRun run = RunDataTool({u"build"_s, u"marks"_s, u"--out"_s, m_scratch.Path(u""_s)});
        EXPECT_EQ(run.exitCode, 0) << qPrintable(run.errors);
        OpenedDatabase(File()).RunScript(
            u"insert into SUTTA_LIST values (6, 1101, 'Chương <1>', 'Kaṇḍaṃ', null, null);"
            "insert into SUTTA_LIST values (2, 9, 'Kinh', null, null, null);"
            "insert into SUTTA_TEXT_FOCUS values (4, '\uFEFFHai, \"ba\"', '\uFEFF<p>một  "
            "<b>hai</b></p>\r\n<p>ba&nbsp;&lt;4"
            "</p>', 2, 'ghi *chú*' || ascii_char(13) || ascii_char(10) || 'dòng', 6, 1101, '2024-02-29 23:59:58', "
            "'khóa');"
            "insert into SUTTA_TEXT_FOCUS values (7, null, null, 9, null, 6, 1101, null, null);"
            "insert into SUTTA_TEXT_FOCUS values (9, 'kinh', 'x', 4, null, 2, 9, '2024-03-01 00:00:00', null);"
            "insert into SUTTA_TEXT_FOCUS values (5, 'lạc', 'y', 1, null, 6, 9999, '2024-03-01 00:00:00', null);"
            "commit;"_s);
    }
    QString File() const { return m_scratch.Path(u"TARUNECLIENT.FDB"_s); }
    QString Backups() const { return m_scratch.Path(u"backup"_s); }
    QStringList BackupNames() const { return QDir(Backups()).entryList(QDir::Files, QDir::Name); }
    QString Restored() const { return m_scratch.Path(u"RESTORED.FDB"_s); }
    QString Today() const { return u"TARUNECLIENT-%1.fbk"_s.arg(QDate::currentDate().toString(Qt::ISODate)); }
    ToolRun Backup(const QStringList &more = {}) const
    {
        return RunDataTool(QStringList{u"backup"_s, u"marks"_s, u"--file"_s, File()} + more);
    }
    ToolRun Restore(const QString &backup, const QString &to = {}) const
    {
        return RunDataTool({u"restore"_s, backup, u"--to"_s, to.isEmpty() ? Restored() : to});
    }
    QString Export(const QString &format) const
    {
        const ToolRun run = RunDataTool({u"export"_s, u"marks"_s, u"--format"_s, format, u"--file"_s, File()});
        EXPECT_EQ(run.exitCode, 0) << qPrintable(run.errors);
        return run.output;
    }

    ScratchFolder m_scratch;
};

TEST_F(MarksVerbs, ABackupMadeWhileTheFileIsOpenComesBackWhole)
{
    OpenedDatabase inUse(File());
    const auto rows = inUse.Rows(QString::fromUtf16(AllMarks));
    EXPECT_EQ(Backup().exitCode, 0);
    EXPECT_EQ(Backup().exitCode, 0) << "a second one of the day has a name of its own";
    EXPECT_EQ(BackupNames(), (QStringList{QString(Today()).replace(u".fbk"_s, u"-2.fbk"_s), Today()}));
    const ToolRun run = Restore(Backups() + u'/' + Today());
    EXPECT_EQ(run.exitCode, 0) << qPrintable(run.errors);
    OpenedDatabase restored(Restored());
    EXPECT_EQ(restored.Rows(QString::fromUtf16(AllMarks)), rows);
    EXPECT_EQ(restored.Rows(u"select MON$FORCED_WRITES from MON$DATABASE"_s)[0][0].toInt(), 1);
    EXPECT_THROW(restored.Execute(u"insert into SUTTA_TEXT_FOCUS (ID_FOC) values (4)"_s), std::exception);
    // Nothing that exists is written over.
    const QString backup = Backups() + u'/' + Today();
    const QByteArray saved = BytesOf(backup), marks = BytesOf(File());
    EXPECT_EQ(Backup({u"--to"_s, backup}).exitCode, 2);
    EXPECT_EQ(Restore(backup, File()).exitCode, 2);
    EXPECT_TRUE(BytesOf(backup) == saved && BytesOf(File()) == marks);
}

TEST_F(MarksVerbs, ADamagedBackupLeavesNothingBehind)
{
    ASSERT_EQ(Backup().exitCode, 0);
    const QByteArray whole = BytesOf(Backups() + u'/' + Today());
    const QByteArray used = whole.left(whole.lastIndexOf('\n') + 1); // the engine fills up with zeros
    const QString damaged = m_scratch.Path(u"damaged.fbk"_s);
    const QStringList before = QDir(m_scratch.Path(u""_s)).entryList(QDir::AllEntries, QDir::Name);
    for (const QByteArray &bytes : {QByteArray(), QByteArray("no backup"), used.left(100), used.left(used.size() / 2),
                                    used.left(used.size() * 3 / 4), used.left(used.size() - 40), BytesOf(File())}) {
        WriteFile(damaged, bytes);
        const ToolRun run = Restore(damaged);
        EXPECT_EQ(run.exitCode, 2) << bytes.size();
        EXPECT_NE(run.errors, QString());
        EXPECT_EQ(run.output, QString()) << "the engine's prompt stays inside";
        QFile::remove(damaged);
        EXPECT_EQ(QDir(m_scratch.Path(u""_s)).entryList(QDir::AllEntries, QDir::Name), before) << bytes.size();
    }
}

TEST_F(MarksVerbs, DailyBackupsComeOnceADayAndSevenStay)
{
    QStringList kept{u"notes.txt"_s, u"TARUNECLIENT-2020-01-01-2.fbk"_s, u"TARUNECLIENT-mine.fbk"_s};
    for (const QString &name : std::as_const(kept))
        WriteFile(Backups() + u'/' + name, "mine");
    for (int day = 1; day <= 9; ++day)
        WriteFile(Backups() + u"/TARUNECLIENT-2020-01-0%1.fbk"_s.arg(day), "old");
    EXPECT_EQ(Backup({u"--daily"_s}).exitCode, 0);
    for (int day = 4; day <= 9; ++day)
        kept.append(u"TARUNECLIENT-2020-01-0%1.fbk"_s.arg(day));
    kept.append(Today());
    EXPECT_THAT(BackupNames(), testing::UnorderedElementsAreArray(kept));
    const QByteArray first = BytesOf(Backups() + u'/' + Today());
    OpenedDatabase(File()).RunScript(u"delete from SUTTA_TEXT_FOCUS; commit;"_s);
    EXPECT_EQ(Backup({u"--daily"_s}).exitCode, 0);
    EXPECT_TRUE(BytesOf(Backups() + u'/' + Today()) == first);
}

TEST_F(MarksVerbs, AFailedBackupLeavesTheFolderAsItWas)
{
    constexpr int room = 8 << 20;
    OpenedDatabase(File()).RunScript(
        u"update SUTTA_TEXT_FOCUS set TEXT_FOC = (select list(rpad('x', 8000, 'y')) from RDB$RELATION_FIELDS, RDB$DATABASE); commit;"_s);
    EXPECT_GT(QFileInfo(File()).size(), room);
    {
        const FullDisk full(room);
        EXPECT_EQ(Backup({u"--daily"_s}).exitCode, 2);
    }
    EXPECT_TRUE(BackupNames().isEmpty());
    QFile::rename(File(), Restored());
    WriteFile(File(), "no database");
    EXPECT_EQ(Backup({u"--daily"_s}).exitCode, 2);
    EXPECT_TRUE(BackupNames().isEmpty());
}

TEST_F(MarksVerbs, ExportsHoldEveryMarkByText)
{
    EXPECT_EQ(Export(u"csv"_s).toStdString(),
              "ID_FOC,NIK_SUT,NIC_SUT,NAME_SUT_VIE,NAME_SUT_PAL,NAME_SUT_ENG,NAME_FOC,KEYWORD_FOC,PRIORITY_FOC,"
              "DATETIME_FOC,DESC_FOC,TEXT,TEXT_FOC\r\n"
              "9,2,9,\"Kinh\",\"\",\"\",\"kinh\",\"\",4,2024-03-01T00:00:00,\"\",\"x\",\"x\"\r\n"
              "4,6,1101,\"Chương <1>\",\"Kaṇḍaṃ\",\"\",\"Hai, \"\"ba\"\"\",\"khóa\",2,2024-02-29T23:59:58,"
              "\"ghi *chú*\r\ndòng\",\"một hai\nba\u00A0<4\",\"<p>một  <b>hai</b></p>\r\n<p>ba&nbsp;&lt;4</p>\"\r\n"
              "7,6,1101,\"Chương <1>\",\"Kaṇḍaṃ\",\"\",\"\",\"\",9,,\"\",\"\",\"\"\r\n"
              "5,6,9999,\"\",\"\",\"\",\"lạc\",\"\",1,2024-03-01T00:00:00,\"\",\"y\",\"y\"\r\n");
    const QString html = Export(u"html"_s);
    EXPECT_TRUE(html.contains(u"<h1>Chương &lt;1&gt; · Kaṇḍaṃ</h1>\n<h2>Hai, &quot;ba&quot;</h2>\n"
                              "<p><small>Cao · 2024-02-29 23:59 · khóa</small></p>\n"
                              "<blockquote>một hai<br>\nba\u00A0&lt;4</blockquote>\n<p>ghi *chú*<br>\ndòng</p>\n"_s))
        << html.toStdString();
    EXPECT_EQ(html.count(u"<h1>"_s), 3);
    const QString markdown = Export(u"markdown"_s);
    EXPECT_TRUE(markdown.contains(
        u"# Chương \\<1\\> · Kaṇḍaṃ <!-- 6-1101 -->\n\n## Hai, \"ba\"\n\nCao · 2024\\-02\\-29 23:59 · khóa\n\n"
        "> một hai  \n> ba\u00A0\\<4\n\nghi \\*chú\\*  \ndòng\n"_s))
        << markdown.toStdString();
    EXPECT_EQ(RunDataTool({u"export"_s, u"--format"_s, u"pdf"_s, u"--file"_s, File()}).exitCode, 2);
}

TEST_F(MarksVerbs, CheckNamesWhatPutsMarksAtRisk)
{
    EXPECT_EQ(RunDataTool({u"check"_s, File()}).output.toStdString(),
              "mark 5: text 9999 of collection 6 is missing in the list, so the mark is never shown\n"
              "2 texts, 4 marks: 1 findings\n");
    OpenedDatabase(File()).RunScript(u"alter table SUTTA_TEXT_FOCUS drop constraint PK_SUTTA_TEXT_FOCUS;"
                                     "alter table SUTTA_LIST drop constraint PK_SUTTA_LIST; commit;"
                                     "update SUTTA_TEXT_FOCUS set ID_FOC = 4 where ID_FOC in (5, 7);"
                                     "update SUTTA_TEXT_FOCUS set NIC_SUT = 1101 where NIC_SUT = 9999;"
                                     "insert into SUTTA_LIST values (2, 9, 'Kinh', null, null, null); commit;"_s);
    EXPECT_EQ(RunDataTool({u"check"_s, File()}).output.toStdString(),
              "text 9 of collection 2: stands in the list 2 times, and so does each of its marks\n"
              "mark 4: 3 have this key, so they can be neither changed nor deleted\n"
              "3 texts, 4 marks: 2 findings\n");
    QByteArray bytes = BytesOf(File());
    constexpr int flags = 42; // of the header page; the bit asks for forced writes
    EXPECT_EQ(bytes[flags] & 2, 2) << "the file as built";
    bytes[flags] = static_cast<char>(bytes[flags] & ~2);
    WriteFile(File(), bytes);
    EXPECT_TRUE(RunDataTool({u"check"_s, File()})
                    .output.startsWith(u"the file: forced writes are off, a power cut may take marks with it\n"_s));
}

} // namespace
