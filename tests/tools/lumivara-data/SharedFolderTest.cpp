#include "tools/ToolSupport.h"

#include <QDate>

#include <csignal>
#include <fcntl.h>
#include <functional>
#include <grp.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace {

/// Two users of one folder. A test that is run as root is both; otherwise one user plays the other, too.
const uid_t First = ::geteuid() == 0 ? 4001 : ::geteuid(), Second = ::geteuid() == 0 ? 4002 : ::geteuid();

/// "s" is a folder that all may write, with marks that all may write; "v" is the second user's own, with a secret.
class SharedFolder : public ToolTest
{
protected:
    void SetUp() override
    {
        ::chmod(Path().toUtf8().constData(), 0755);
        for (const auto &[name, mode, owner] : {std::tuple("s", 0777, First), {"v", 0700, Second}}) {
            const QByteArray path = Path(QLatin1StringView(name)).toUtf8();
            EXPECT_EQ(::mkdir(path.constData(), 0700), 0);
            EXPECT_EQ(::chmod(path.constData(), static_cast<mode_t>(mode)), 0);
            Give(path, owner);
        }
        RunAs(First, "build marks --out s");
        ::chmod(Path(Marks).toUtf8().constData(), 0666);
        Put(Secret, "mine");
        ::chmod(Path(Secret).toUtf8().constData(), 0600);
        Give(Path(Secret).toUtf8(), Second);
    }
    static void Give(const QByteArray &path, uid_t owner) { EXPECT_EQ(::lchown(path.constData(), owner, owner), 0); }

    void StartAs(QProcess &process, uid_t user, const std::string &words, mode_t mask = 022) const
    {
        process.setChildProcessModifier([=] {
            ::umask(mask);
            if (::geteuid() == 0 && user != 0 &&
                (::setgroups(0, nullptr) != 0 || ::setgid(user) != 0 || ::setuid(user) != 0))
                ::_exit(9);
        });
        Start(process, words);
    }
    /// The exit code; -1 if the tool crashed or hung.
    int RunAs(uid_t user, const std::string &words, mode_t mask = 022) const
    {
        QProcess process;
        StartAs(process, user, words, mask);
        constexpr int longestRunMilliseconds = 60000;
        const bool hasEnded = process.waitForFinished(longestRunMilliseconds);
        m_told = process.readAllStandardError().toStdString();
        return hasEnded && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }
    mode_t ModeOf(const QString &name) const
    {
        struct stat status = {};
        EXPECT_EQ(::stat(Path(name).toUtf8().constData(), &status), 0) << qPrintable(name);
        return status.st_mode & 07777;
    }

    static inline const QString Marks = u"s/TARUNECLIENT.FDB"_s, Secret = u"v/secret"_s;
    mutable std::string m_told; ///< on the errors by the last run
};

const std::string Export = "export marks --file s/TARUNECLIENT.FDB --out s/out.csv",
                  Backup = "backup --file s/TARUNECLIENT.FDB";

TEST_F(SharedFolder, NoTrapLeadsToAnotherFile)
{
    enum Trap { Link, SecondName, Pipe, FolderLink, Dangling };
    const QString backup = u"s/backup/TARUNECLIENT-%1.fbk"_s.arg(QDate::currentDate().toString(Qt::ISODate));
    // Where, what, and how export and backup must end: 0 done, 2 refused.
    const std::tuple<QString, Trap, int, int> cases[]{
        {u"s/lock/fb_init"_s, Link, 0, 0},
        {u"s/lock/fb_init"_s, SecondName, 2, 2},
        {u"s/lock/fb_init"_s, Pipe, 0, 0},
        {u"s/lock/fb12_trace"_s, Link, 0, 0},
        {u"s/lock/fb_other"_s, Dangling, 0, 0},
        {u"s/lock"_s, FolderLink, 2, 2},
        {u"s/out.csv"_s, Link, 0, 0},
        {u"s/out.csv"_s, SecondName, 0, 0},
        {u"s/out.csv"_s, Pipe, 2, 0},
        {u"s/out.csv.part"_s, Link, 0, 0},
        {u"s/out.csv.part-abcdef"_s, FolderLink, 0, 0},
        {u"s/out.csv.part.lock"_s, Link, 2, 0},
        {u"s/out.csv.part.lock"_s, SecondName, 2, 0},
        {u"s/out.csv.part.lock"_s, Pipe, 2, 0},
        {backup, Dangling, 0, 2},
        {backup, Link, 0, 0},
        {backup + u".part.lock"_s, Link, 0, 2},
    };
    for (const auto &[name, trap, exportEnds, backupEnds] : cases) {
        SCOPED_TRACE(qPrintable(name + u' ' + QString::number(trap)));
        for (const QString &folder : {u"s/lock"_s, u"s/backup"_s})
            QDir(Path(folder)).removeRecursively();
        QFile::remove(Path(u"s/out.csv"_s));
        const QString above = QFileInfo(Path(name)).path();
        if (!QFileInfo::exists(above)) {
            EXPECT_TRUE(QDir().mkpath(above));
            ::chmod(above.toUtf8().constData(), 0777);
            Give(above.toUtf8(), First);
        }
        const QByteArray path = Path(name).toUtf8(), secret = Path(Secret).toUtf8(), folder = Path(u"v"_s).toUtf8();
        const int isSet = trap == Link         ? ::symlink(secret.constData(), path.constData())
                          : trap == SecondName ? ::link(secret.constData(), path.constData())
                          : trap == Pipe       ? ::mkfifo(path.constData(), 0666)
                          : trap == FolderLink ? ::symlink(folder.constData(), path.constData())
                                               : ::symlink((folder + "/new").constData(), path.constData());
        EXPECT_EQ(isSet, 0);
        if (trap != SecondName)
            Give(path, First);
        EXPECT_EQ(RunAs(Second, Export), exportEnds) << m_told;
        EXPECT_EQ(RunAs(Second, Backup), backupEnds) << m_told;
        EXPECT_EQ(Bytes(Secret), "mine");
        EXPECT_EQ(ModeOf(Secret), 0600U);
        EXPECT_EQ(ModeOf(u"v"_s), 0700U);
        EXPECT_EQ(Names(u"v"_s), QStringList{u"secret"_s});
        ::unlink(path.constData());
    }
}

TEST_F(SharedFolder, EachUserOpensWhatAnotherHasOpenedBefore)
{
    for (const uid_t user : {First, ::geteuid(), Second, First}) {
        EXPECT_EQ(RunAs(user, Export), 0) << user << m_told;
        QFile::remove(Path(u"s/out.csv"_s));
        for (const QString &name : Names(u"s/lock"_s))
            EXPECT_EQ(ModeOf(u"s/lock/"_s + name), 0666U) << qPrintable(name);
    }
    // As an older copy left it behind.
    ::chmod(Path(u"s/lock/fb_init"_s).toUtf8().constData(), 0660);
    EXPECT_EQ(RunAs(::geteuid(), Export), 0);
    EXPECT_EQ(ModeOf(u"s/lock/fb_init"_s), 0666U);
}

TEST_F(SharedFolder, TwoUsersBackUpAtOnce)
{
    QProcess first, second;
    StartAs(first, First, Backup);
    StartAs(second, Second, Backup);
    for (QProcess *process : {&first, &second}) {
        EXPECT_TRUE(process->waitForFinished());
        EXPECT_EQ(process->exitCode(), 0) << process->readAllStandardError().constData();
    }
    EXPECT_EQ(RunAs(First, Backup + " --daily"), 0) << m_told;
    EXPECT_EQ(RunAs(Second, Backup), 0) << m_told;
    EXPECT_EQ(Names(u"s/backup"_s).size(), 3);
    EXPECT_EQ(Names(u"s"_s).filter(u".part"_s), QStringList());
}

TEST_F(SharedFolder, ASyncTakesAndTouchesNothingOfAnotherUser)
{
    const std::string sync = "sync --file s/TARUNECLIENT.FDB --with s/carry --quiet";
    EXPECT_TRUE(QDir().mkpath(Path(u"s/carry"_s)));
    ::chmod(Path(u"s/carry"_s).toUtf8().constData(), 0777);
    Give(Path(u"s/carry"_s).toUtf8(), First);
    EXPECT_EQ(RunAs(Second, sync), 0) << m_told;
    const QString own = u"s/carry/"_s + Names(u"s/carry"_s).value(0);
    const QByteArray carried = Bytes(own), path = Path(own).toUtf8(), secret = Path(Secret).toUtf8();
    // Its own file is another one meanwhile: a link to a secret, the secret by a second name, a pipe.
    const auto link = [&] { return ::symlink(secret.constData(), path.constData()); };
    const auto secondName = [&] { return ::link(secret.constData(), path.constData()); };
    const auto pipe = [&] { return ::mkfifo(path.constData(), 0666); };
    const std::pair<std::function<int()>, int> traps[]{{link, 1}, {secondName, 1}, {pipe, 2}};
    for (const auto &[set, ends] : traps) {
        ::unlink(path.constData());
        EXPECT_EQ(set(), 0);
        EXPECT_EQ(RunAs(Second, sync), ends) << m_told;
        EXPECT_EQ(Bytes(Secret), "mine");
        EXPECT_EQ(ModeOf(Secret), 0600U);
        if (ends == 1) {
            EXPECT_EQ(Bytes(own), carried);
        }
    }
    ::unlink(path.constData());
    EXPECT_EQ(RunAs(First, sync), 0) << m_told;
    // What another user puts there changes nobody's marks.
    Put(u"s/carry/lumivara-marks-x.sync"_s, carried);
    Give(Path(u"s/carry/lumivara-marks-x.sync"_s).toUtf8(), Second);
    EXPECT_EQ(RunAs(First, sync), First == Second ? 0 : 1) << m_told;
}

TEST_F(SharedFolder, FilesKeepTheMaskAndTheModeOfWhatTheyReplace)
{
    Put(u"w.tsv"_s, "ādi\tđầu\n");
    for (const mode_t mask : {022U, 077U, 002U}) {
        SCOPED_TRACE(mask);
        QDir(Path(u"s/backup"_s)).removeRecursively();
        const std::tuple<const char *, std::string> made[]{
            {"s/out.csv", Export},
            {"s/b.fbk", Backup + " --to s/b.fbk"},
            {"s/P.FDB", "import dictionary w.tsv --kind 5 --into s/P.FDB"},
            {"s/x.tsv", "export dictionary --file s/P.FDB --kind 5 --out s/x.tsv"},
        };
        for (const auto &[file, words] : made) {
            const QString name = QString::fromUtf8(file);
            EXPECT_EQ(RunAs(First, words, mask), 0) << m_told;
            EXPECT_EQ(ModeOf(name), 0666U & ~mask) << file;
            if (name.endsWith(u"fbk"_s)) // is never replaced
                continue;
            for (const mode_t mode : {0640U, 0604U}) {
                ::chmod(Path(name).toUtf8().constData(), mode);
                EXPECT_EQ(RunAs(First, words + (name.endsWith(u"FDB"_s) ? " --replace" : ""), mask), 0) << m_told;
                EXPECT_EQ(ModeOf(name), mode) << file;
            }
            ::chmod(Path(name).toUtf8().constData(), 0644);
        }
        for (const char *name : {"s/out.csv", "s/b.fbk", "s/P.FDB", "s/x.tsv"})
            QFile::remove(Path(QString::fromUtf8(name)));
    }
}

TEST_F(SharedFolder, NothingIsMadeBesideWhatWasAskedFor)
{
    Put(u"w.tsv"_s, "ādi\tđầu\n");
    Put(u"c/t.html"_s, "<p>x");
    Put(u"c/canon.csv"_s, "kind,key,group,number,pali,vietnamese,english,page_pali\ngroup,1,-1,,a,a,a,\n"
                          "text,1500,1,1,t,t,t,t.html\n");
    EXPECT_TRUE(QDir().mkpath(Path(u"any"_s)));
    const std::pair<std::string, QString> made[]{
        {"import dictionary w.tsv --kind 5 --into any/P.FDB", u"P.FDB"_s},
        {"export dictionary --file any/P.FDB --kind 5 --out any/x.tsv", u"x.tsv"_s},
        {"import canon c --into any/K.FDB", u"K.FDB"_s},
        {"build marks --out any", u"TARUNECLIENT.FDB"_s},
    };
    QStringList expected;
    for (const auto &[words, name] : made) {
        Run(0, words);
        expected.append(name);
        EXPECT_THAT(Names(u"any"_s), testing::UnorderedElementsAreArray(expected)) << words;
    }
}

/// A dictionary that the engine never comes to an end with.
class EndlessWords : public SharedFolder
{
protected:
    void SetUp() override
    {
        SharedFolder::SetUp();
        EXPECT_TRUE(QFile::copy(Path(Marks), Path(u"s/endless.FDB"_s)));
        OpenedDatabase(Path(u"s/endless.FDB"_s))
            .RunScript(u"set term ^ ; create procedure SP_GET_LIST_WORDS (K integer) returns (WORD_NAME varchar(63), "
                       "DICT_TYPE integer) as begin DICT_TYPE = 0; while (DICT_TYPE >= 0) do "
                       "DICT_TYPE = mod(DICT_TYPE + 1, 9); suspend; end^ set term ; ^"_s);
    }
    /// Runs until the file that is being made is there, and stops the run.
    std::string StopAt(int signal, const std::string &words)
    {
        QProcess process;
        StartAs(process, ::geteuid(), words);
        QStringList made;
        while (made.isEmpty() && !process.waitForFinished(1)) {
            for (const QString &folder : Names(u"s"_s).filter(u".part-"_s)) {
                EXPECT_EQ(ModeOf(u"s/"_s + folder), 0700U);
                made += Names(u"s/"_s + folder);
            }
        }
        if (process.processId() == 0) // that would be every process of this group
            return "ended by itself: " + process.readAllStandardError().toStdString();
        ::kill(static_cast<pid_t>(process.processId()), signal);
        EXPECT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitStatus() == QProcess::CrashExit, signal == SIGKILL) << signal;
        EXPECT_TRUE(signal == SIGKILL || process.exitCode() == 2) << signal;
        return process.readAllStandardError().toStdString();
    }
};

TEST_F(EndlessWords, EverySignalEndsTheToolWithNothingLeft)
{
    const std::string endless = "export dictionary --kind 5 --file s/endless.FDB --out s/out.csv";
    EXPECT_TRUE(QDir().mkpath(Path(u"tmp"_s)));
    m_environment = QProcess::systemEnvironment() + QStringList{u"TMPDIR="_s + Path(u"tmp"_s)};
    Run(0, "export dictionary --kind 5 --out s/out.csv --file", {ProductFolder() + u"PALIDICT.FDB"_s});
    const QStringList before = Names(u"s"_s);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        EXPECT_THAT(StopAt(signal, endless), HasSubstr("interrupted; the files are as they were")) << signal;
        EXPECT_EQ(Names(u"s"_s), before) << signal;
    }
    for (int kills = 0; kills < 3; ++kills)
        StopAt(SIGKILL, endless);
    Run(0, "export dictionary --kind 5 --out s/out.csv --file",
        {ProductFolder() + u"PALIDICT.FDB"_s}); // nothing of theirs is in the way, or stays
    EXPECT_EQ(Names(u"s"_s), before);
    EXPECT_EQ(Names(u"tmp"_s), QStringList());
    EXPECT_EQ(Names(u"s/lock"_s).filter(u"fb_trace_"_s), QStringList());
}

TEST_F(SharedFolder, AWaitForAnothersLockIsToldAndEndsWithASignal)
{
    EXPECT_EQ(RunAs(First, Export), 0);
    const QString lock = Path(u"s/lock/fb_init"_s);
    const int held = ::open(lock.toUtf8().constData(), O_RDWR | O_CLOEXEC);
    EXPECT_EQ(::flock(held, LOCK_EX), 0);
    QProcess process;
    StartAs(process, Second, Export);
    process.setReadChannel(QProcess::StandardError);
    while (!process.canReadLine())
        ASSERT_TRUE(process.waitForReadyRead());
    EXPECT_EQ(process.readLine().toStdString(),
              "lumivara-data: waiting for " + lock.toStdString() + ": another process holds it\n");
    process.terminate();
    EXPECT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 2);
    ::close(held);
}

TEST_F(SharedFolder, AReaderThatLeavesEndsTheExport)
{
    OpenedDatabase(Path(Marks))
        .Execute(u"insert into SUTTA_TEXT_FOCUS (ID_FOC, TEXT_FOC, NIK_SUT, NIC_SUT) values (1, 'x', 6, 1)"_s);
    QProcess process;
    Start(process, "export marks --format csv --file s/TARUNECLIENT.FDB");
    process.closeReadChannel(QProcess::StandardOutput);
    EXPECT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
}

} // namespace
