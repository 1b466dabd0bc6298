#include "tools/ToolSupport.h"

#include <random>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using testing::EndsWith;
using testing::HasSubstr;

namespace {

/// Machines "a", "b" and "c" with a file of marks as delivered each, and a folder "carry" that all of them see.
class MarksSyncVerb : public ToolTest
{
protected:
    void SetUp() override
    {
        for (const QString &machine : {u"a"_s, u"b"_s, u"c"_s}) {
            EXPECT_TRUE(QDir().mkpath(Path(machine)));
            Run(0, "build marks --out " + machine.toStdString());
        }
        EXPECT_TRUE(QDir().mkpath(Path(u"carry"_s)));
    }
    static QString FileOf(const QString &machine) { return machine + u"/TARUNECLIENT.FDB"_s; }
    std::string Sync(const std::string &machine, int exitCode = 0, const std::string &more = "") const
    {
        return Run(exitCode, "sync marks --with carry --file " + machine + "/TARUNECLIENT.FDB" + more);
    }
    void Do(const QString &machine, const QString &statement) const
    {
        OpenedDatabase(Path(FileOf(machine))).Execute(statement);
    }
    void Mark(const QString &machine, const QString &title, const QString &time = u"2024-02-29 23:59:58.1234"_s) const
    {
        Do(machine, u"insert into SUTTA_TEXT_FOCUS select coalesce(max(ID_FOC), 0) + 1, '%1', '\uFEFF<p>%1</p>', 2, "
                    u"null, 6, 1101, "
                    "'%2', 'khóa' from SUTTA_TEXT_FOCUS"_s.arg(title, time));
    }
    /// As the program posts an edit: with a new key.
    void Edit(const QString &machine, const QString &title, const QString &note) const
    {
        Do(machine,
           u"update SUTTA_TEXT_FOCUS set ID_FOC = (select max(ID_FOC) + 1 from SUTTA_TEXT_FOCUS), "
           "DESC_FOC = '%2', DATETIME_FOC = dateadd(1 hour to DATETIME_FOC) where NAME_FOC = '%1'"_s.arg(title, note));
    }
    void Delete(const QString &machine, const QString &title) const
    {
        Do(machine, u"delete from SUTTA_TEXT_FOCUS where NAME_FOC = '%1'"_s.arg(title));
    }
    /// All that a reader has, without the keys.
    std::string Marks(const QString &machine) const
    {
        return Ask(FileOf(machine),
                   "select NAME_FOC, DESC_FOC, KEYWORD_FOC, PRIORITY_FOC, NIK_SUT, NIC_SUT, "
                   "cast(DATETIME_FOC as varchar(30)), TEXT_FOC from SUTTA_TEXT_FOCUS order by 1, 2, 7, 3");
    }
    QString OwnFile() const { return u"carry/"_s + Names(u"carry"_s).value(0); }
};

TEST_F(MarksSyncVerb, TwoMachinesComeToTheSame)
{
    Mark(u"a"_s, u"một"_s);
    Mark(u"a"_s, u"hai \U0001F600"_s);
    Do(u"a"_s, u"insert into SUTTA_TEXT_FOCUS values (9, null, null, null, '', 2, 9, null, '')"_s);
    Do(u"a"_s, u"insert into SUTTA_LIST values (2, 9, 'Kinh', null, null, null)"_s);
    Mark(u"b"_s, u"ba"_s);
    EXPECT_THAT(Sync("a"), EndsWith("0 marks added, 0 changed, 0 deleted, 0 conflicts, 0 files read\n"));
    const std::string told = Sync("b");
    EXPECT_THAT(told, HasSubstr("text 9 of collection 2 (Kinh) is missing in the list of texts: added"));
    EXPECT_THAT(told, HasSubstr("3 marks added, 0 changed, 0 deleted, 0 conflicts, 1 files read"));
    EXPECT_THAT(Sync("a"), HasSubstr("1 marks added, 0 changed, 0 deleted, 0 conflicts, 2 files read"));
    EXPECT_EQ(Marks(u"a"_s), Marks(u"b"_s));
    EXPECT_EQ(Names(u"carry"_s).size(), 2);
    // Every mark is shown, and nothing in the file is wrong.
    EXPECT_THAT(Run(0, "check b/TARUNECLIENT.FDB"), HasSubstr("4 marks: nothing wrong"));

    Edit(u"a"_s, u"một"_s, u"sửa"_s);
    Delete(u"a"_s, u"ba"_s);
    Sync("a");
    EXPECT_THAT(Sync("b", 0, " --json"), testing::AllOf(HasSubstr("\"changed\": 1"), HasSubstr("\"deleted\": 1")));
    EXPECT_EQ(Marks(u"a"_s), Marks(u"b"_s));
    // The changed mark has the key that an edit here would have given it.
    EXPECT_EQ(Ask(FileOf(u"b"_s), "select first 1 NAME_FOC from SUTTA_TEXT_FOCUS order by ID_FOC desc"), "một");
    // Nothing new: nothing is written.
    const QByteArray carried = Bytes(OwnFile());
    EXPECT_EQ(Sync("b", 0, " --quiet"), "");
    EXPECT_EQ(Bytes(OwnFile()), carried);
}

TEST_F(MarksSyncVerb, AConflictIsNamedAndKeepsBoth)
{
    Mark(u"a"_s, u"một"_s);
    Sync("a");
    Sync("b");
    Edit(u"a"_s, u"một"_s, u"trái"_s);
    Edit(u"b"_s, u"một"_s, u"phải"_s);
    Sync("a");
    EXPECT_EQ(Sync("b", 1, " --quiet"), "một: was edited on two machines; both are kept, 2 marks now\n");
    EXPECT_THAT(Sync("b"), HasSubstr("0 conflicts"));
    EXPECT_THAT(Sync("a", 1), HasSubstr("1 marks added, 0 changed, 0 deleted, 1 conflicts"));
    EXPECT_EQ(Marks(u"a"_s), Marks(u"b"_s));
    EXPECT_EQ(Ask(FileOf(u"a"_s), "select DESC_FOC from SUTTA_TEXT_FOCUS order by 1"), "phải|trái");
    Do(u"a"_s, u"delete from SUTTA_TEXT_FOCUS where DESC_FOC = 'phải'"_s);
    Sync("a");
    Sync("b");
    EXPECT_EQ(Ask(FileOf(u"b"_s), "select DESC_FOC from SUTTA_TEXT_FOCUS"), "trái");
}

TEST_F(MarksSyncVerb, ATrialWritesNothing)
{
    Mark(u"b"_s, u"một"_s);
    Sync("b");
    const std::string told = Sync("a", 0, " --dry-run");
    EXPECT_THAT(told, HasSubstr("1 marks added"));
    EXPECT_THAT(told, EndsWith(": nothing was written\n"));
    EXPECT_EQ(Names(u"carry"_s).size(), 1);
    EXPECT_EQ(Ask(FileOf(u"a"_s), "select count(*) from RDB$RELATIONS where RDB$RELATION_NAME starting with 'MARK'"),
              "0");
    EXPECT_EQ(Marks(u"a"_s), "");
}

TEST_F(MarksSyncVerb, FilesThatAreNoneAreNamedAndTheOthersTaken)
{
    Mark(u"b"_s, u"một"_s);
    Sync("b");
    const QByteArray whole = Bytes(OwnFile());
    const QString good = OwnFile();
    Put(u"carry/lumivara-marks-1.sync"_s, whole.chopped(9));
    QByteArray changed = whole;
    changed[whole.size() / 2] = static_cast<char>(changed[whole.size() / 2] ^ 1);
    Put(u"carry/lumivara-marks-2\u202Ex.sync"_s, changed);
    Put(u"carry/lumivara-marks-3.sync"_s, "no marks\n");
    Put(u"outside"_s, whole);
    EXPECT_TRUE(QFile::link(Path(u"outside"_s), Path(u"carry/lumivara-marks-4.sync"_s)));
    EXPECT_EQ(::mkfifo(Path(u"carry/lumivara-marks-5.sync"_s).toUtf8().constData(), 0600), 0);
    Put(u"carry/lumivara-marks-6.sync.tmp"_s, "on its way");
    const std::string told = Sync("a", 1);
    ExpectParts(told, {"lumivara-marks-1.sync: left out: is not whole; it may still be on its way\n",
                       "lumivara-marks-2\\u202ex.sync: left out: ",
                       "lumivara-marks-3.sync: left out: has a line that is none of such a file\n",
                       "lumivara-marks-4.sync: left out: is a link\n",
                       "lumivara-marks-5.sync: left out: is no regular file\n", "1 marks added"});
    EXPECT_EQ(Marks(u"a"_s), Marks(u"b"_s));
    // Two of one machine, as a program that carries leaves them, are as good as one.
    for (const QString &name : Names(u"carry"_s).filter(QRegularExpression(u"-[1-5][^0-9a-f]"_s)))
        QFile::remove(Path(u"carry/"_s + name));
    QFile::remove(Path(u"carry/lumivara-marks-5.sync"_s)); // no entry of a plain list
    EXPECT_TRUE(QFile::rename(Path(good), Path(good.chopped(5) + u" (conflict copy).sync"_s)));
    EXPECT_THAT(Sync("c"), HasSubstr("1 marks added"));
}

TEST_F(MarksSyncVerb, TheProgramMayHaveTheFileOpen)
{
    EXPECT_TRUE(QDir(Path(u"c"_s)).removeRecursively());
    EXPECT_TRUE(QFile::link(LiveFolder(), Path(u"c"_s))); // this process and the tool must know of each other
    QFile::remove(Path(FileOf(u"c"_s)));
    Run(0, "build marks --out c");
    OpenedDatabase program(Path(FileOf(u"c"_s)));
    const std::string titles = "select NAME_FOC from SUTTA_TEXT_FOCUS order by 1";
    EXPECT_EQ(program.Text(titles), "");
    Mark(u"a"_s, u"một"_s);
    Sync("a");
    Sync("c"); // the first one makes tables
    EXPECT_EQ(program.Text(titles), "một");
    program.Execute(u"update SUTTA_TEXT_FOCUS set ID_FOC = 7, DESC_FOC = 'x'"_s);
    Sync("c");
    EXPECT_THAT(Sync("a"), HasSubstr("0 marks added, 1 changed"));
    // A row that it is at is not taken from it, whenever it is done with it.
    program.Hold(u"update SUTTA_TEXT_FOCUS set KEYWORD_FOC = 'mine' where ID_FOC = 7"_s);
    Edit(u"a"_s, u"một"_s, u"y"_s);
    Sync("a");
    QProcess process;
    Start(process, "sync --with carry --file c/TARUNECLIENT.FDB");
    process.setReadChannel(QProcess::StandardError);
    EXPECT_TRUE(process.waitForReadyRead());
    program.Commit();
    EXPECT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_THAT(process.readAllStandardOutput().toStdString(), HasSubstr("1 conflicts"));
    EXPECT_EQ(program.Text("select DESC_FOC, KEYWORD_FOC from SUTTA_TEXT_FOCUS order by 1"), "x,mine|y,khóa");
    QFile::remove(Path(FileOf(u"c"_s)));
}

TEST_F(MarksSyncVerb, ABackupKeepsNothingOfIt)
{
    Mark(u"a"_s, u"một"_s);
    Mark(u"a"_s, u"hai"_s);
    Sync("a");
    Edit(u"a"_s, u"một"_s, u"sửa"_s);
    Sync("a");
    Run(0, "backup --file a/TARUNECLIENT.FDB --to saved.fbk");
    const std::string before = Marks(u"a"_s);
    QFile::remove(Path(FileOf(u"a"_s)));
    Run(0, "restore saved.fbk --to a/TARUNECLIENT.FDB"); // nothing strange
    EXPECT_EQ(Ask(FileOf(u"a"_s), "select count(*) from RDB$RELATIONS where RDB$RELATION_NAME starting with 'MARK'"),
              "0");
    EXPECT_THAT(Sync("a"), HasSubstr("0 marks added, 0 changed, 0 deleted, 0 conflicts"));
    EXPECT_EQ(Marks(u"a"_s), before);
    // A copy on the same machine is the same machine; both have all.
    EXPECT_TRUE(QFile::remove(Path(FileOf(u"b"_s))) && QFile::copy(Path(FileOf(u"a"_s)), Path(FileOf(u"b"_s))));
    Mark(u"a"_s, u"ba"_s);
    Mark(u"b"_s, u"bốn"_s);
    Sync("a");
    Sync("b");
    Sync("a");
    EXPECT_EQ(Marks(u"a"_s), Marks(u"b"_s));
    EXPECT_EQ(Ask(FileOf(u"b"_s), "select count(*) from SUTTA_TEXT_FOCUS"), "4");
}

TEST_F(MarksSyncVerb, KilledAnywhereTheNextRunComesToTheSame)
{
    for (const QString &title : {u"một"_s, u"hai"_s, u"ba"_s})
        Mark(u"a"_s, title);
    Sync("a");
    Mark(u"b"_s, u"bốn"_s);
    for (int i = 0; i < 4; ++i) {
        QProcess process;
        Start(process, "sync --with carry --file b/TARUNECLIENT.FDB");
        process.setReadChannel(QProcess::StandardError);
        EXPECT_TRUE(process.waitForReadyRead()); // it reads the folder; how far it comes does not matter
        process.kill();
        EXPECT_TRUE(process.waitForFinished());
    }
    Sync("b");
    Sync("a");
    EXPECT_EQ(Marks(u"a"_s), Marks(u"b"_s));
    EXPECT_EQ(Ask(FileOf(u"a"_s), "select count(*) from SUTTA_TEXT_FOCUS"), "4");
    EXPECT_EQ(Names(u"carry"_s).size(), 2) << "nothing unfinished";
    // Killed between the file and the folder, it leaves what it put there before.
    std::map<QString, QByteArray> before;
    for (const QString &name : Names(u"carry"_s))
        before[name] = Bytes(u"carry/"_s + name);
    Edit(u"a"_s, u"một"_s, u"sửa"_s);
    Sync("a");
    for (const auto &[name, bytes] : before)
        Put(u"carry/"_s + name, bytes);
    Sync("a");
    Sync("b");
    EXPECT_EQ(Marks(u"a"_s), Marks(u"b"_s));
}

TEST_F(MarksSyncVerb, ThreeMachinesAgreeAfterAnyHistory)
{
    std::mt19937 random(7);
    const auto below = [&random](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    const QStringList machines{u"a"_s, u"b"_s, u"c"_s};
    constexpr int steps = 36;
    for (int step = 0; step < steps; ++step) {
        const QString &machine = machines[below(3)];
        const QString title = u"t%1"_s.arg(below(step + 1));
        switch (below(5)) {
        case 0:
            Mark(machine, u"t%1"_s.arg(step));
            break;
        case 1:
            Edit(machine, title, u"n%1"_s.arg(step));
            break;
        case 2:
            Delete(machine, title);
            break;
        default:
            RunDataTool({u"sync"_s, u"--with"_s, Path(u"carry"_s), u"--file"_s, Path(FileOf(machine))}); // 0 or 1
        }
    }
    for (int round = 0; round < 2; ++round) {
        for (const QString &machine : machines)
            RunDataTool({u"sync"_s, u"--with"_s, Path(u"carry"_s), u"--file"_s, Path(FileOf(machine))});
    }
    EXPECT_NE(Marks(u"a"_s), "");
    for (const QString &machine : machines) {
        EXPECT_EQ(Marks(machine), Marks(u"a"_s));
        EXPECT_THAT(Sync(machine.toStdString()), HasSubstr("0 marks added, 0 changed, 0 deleted, 0 conflicts"));
    }
}

} // namespace
