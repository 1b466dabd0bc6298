#include "support/StoreSupport.h"
#include "tools/ToolSupport.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>

#include <cstdlib>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

class DatabaseTest : public StoreTest
{};

/// Text of the failure to open a file.
QString OpenFailure(const QString &path)
{
    TpFIBDatabase other;
    TpFIBTransaction otherTransaction;
    Prepare(other, otherTransaction, path);
    const QString text = FailureOf([&] { other.SetConnected(true); });
    EXPECT_EQ(other.Connected(), text.isEmpty());
    return text;
}

TEST_F(DatabaseTest, UnusableFilesFailWithTheEnginesText)
{
    const QString good = scratch.Path(u"TEST.FDB"_s), bad = scratch.Path(u"BAD.FDB"_s);
    database.SetConnected(false);
    QByteArray noise(65536, Qt::Uninitialized);
    QRandomGenerator(7).fillRange(reinterpret_cast<quint32 *>(noise.data()), noise.size() / 4);

    EXPECT_TRUE(OpenFailure(bad).contains(u"I/O error"_s));
    EXPECT_FALSE(QFile::exists(bad)) << "a missing file is not made";
    for (const QByteArray &bytes : {noise, QByteArray(), BytesOf(good).left(1000)}) {
        WriteFile(bad, bytes);
        const QString text = OpenFailure(bad);
        EXPECT_TRUE(bytes == noise ? text.contains(u"is not a valid database"_s) : !text.isEmpty()) << qPrintable(text);
    }
    TpFIBDatabase other;
    TpFIBTransaction otherTransaction;
    Prepare(other, otherTransaction, bad);
    EXPECT_THROW(other.CreateDatabase(), DatabaseError);
    EXPECT_EQ(QFileInfo(bad).size(), 1000) << "nothing is written over";
    EXPECT_NE(OpenFailure(scratch.Path(u""_s)), QString()) << "a folder";
    EXPECT_EQ(OpenFailure(good), QString()) << "the failures leave the engine usable";
}

TEST_F(DatabaseTest, MadeFilesAreOwnedBySysdbaAndWriteThrough)
{
    EXPECT_EQ(Ask(u"select trim(MON$OWNER) || ' ' || MON$FORCED_WRITES from MON$DATABASE"_s).toString(), u"SYSDBA 1"_s);
}

TEST_F(DatabaseTest, LockFilesAreOpenToEveryUserAndHoldTheirDiskSpace)
{
    const QFileInfoList files = QDir(qEnvironmentVariable("FIREBIRD_LOCK")).entryInfoList({u"fb*"_s}, QDir::Files);
    EXPECT_FALSE(files.isEmpty());
    for (const QFileInfo &file : files) {
        struct stat status = {};
        EXPECT_EQ(::stat(QFile::encodeName(file.filePath()).constData(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777, 0666U) << file.fileName().toStdString();
        EXPECT_GE(status.st_blocks * 512, status.st_size) << file.fileName().toStdString();
    }
}

/// Run in a process of its own, because a process chooses its lock folder once. 0 if all is as it must be.
int OpenWithoutASharedLockFolder(const QString &path)
{
    TpFIBDatabase::SetLockFolder(path + u"/none/lock"_s); // below a file: cannot be made
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(QFileInfo(path).absolutePath()));
    TpFIBDatabase database;
    TpFIBTransaction transaction;
    Prepare(database, transaction, path);
    const QString text = FailureOf([&] { database.SetConnected(true); });
    if (!text.contains(u"only read-only databases can be opened"_s) || database.Connected())
        return 1;
    Prepare(database, transaction, path + u".readonly"_s);
    return FailureOf([&] { database.SetConnected(true); }).isEmpty() ? 0 : 2;
}

TEST(LockFolder, WithoutASharedOneOnlyReadOnlyDatabasesOpen)
{
    // The new process runs this test from its start, and must not load the engine before it chooses the folder.
    const ScratchFolder scratch;
    QString path = qEnvironmentVariable("LUMIVARA_TEST_PATH");
    if (path.isEmpty()) {
        path = scratch.Path(u"TEST.FDB"_s);
        for (const QString &file : {path, path + u".readonly"_s}) {
            EXPECT_TRUE(QFile::copy(EmptyDatabase(), file));
            TpFIBDatabase database;
            TpFIBTransaction transaction;
            Prepare(database, transaction, file);
            database.SetConnected(true);
            database.SetReadOnlyMode(file != path);
        }
        qputenv("LUMIVARA_TEST_PATH", QFile::encodeName(path));
    }
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::exit(OpenWithoutASharedLockFolder(path)), testing::ExitedWithCode(0), "");
    qunsetenv("LUMIVARA_TEST_PATH");
}

} // namespace
