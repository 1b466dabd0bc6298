#include "support/StoreSupport.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>

#include <cstdlib>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

class DatabaseTest : public StoreTest
{
protected:
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
};

void Write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(file.write(bytes), bytes.size());
}

TEST_F(DatabaseTest, OpensAtPathsWithBlanksQuotesAndForeignLetters)
{
    for (const QString &name : {u"một hai"_s, u"it's \"q\""_s, u"Pāḷi ṭ"_s}) {
        EXPECT_TRUE(QDir(scratch.Path(u""_s)).mkdir(name));
        const QString path = scratch.Path(name) + u"/TÊN X.FDB"_s;
        TpFIBDatabase other;
        TpFIBTransaction otherTransaction;
        Prepare(other, otherTransaction, path);
        other.CreateDatabase(4096);
        other.SetConnected(false);
        other.SetConnected(true);
        EXPECT_TRUE(other.Connected());
        EXPECT_TRUE(QFile::exists(path));
    }
}

TEST_F(DatabaseTest, UnusableFilesFailWithTheEnginesText)
{
    const QString good = scratch.Path(u"TEST.FDB"_s);
    database.SetConnected(false);
    QFile file(good);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QByteArray noise(65536, Qt::Uninitialized);
    QRandomGenerator(7).fillRange(reinterpret_cast<quint32 *>(noise.data()), noise.size() / 4);
    const QString bad = scratch.Path(u"BAD.FDB"_s);

    EXPECT_TRUE(OpenFailure(bad).contains(u"I/O error"_s));
    EXPECT_FALSE(QFile::exists(bad)) << "a missing file is not made";
    Write(bad, {});
    EXPECT_NE(OpenFailure(bad), QString());
    Write(bad, noise);
    EXPECT_TRUE(OpenFailure(bad).contains(u"is not a valid database"_s)) << OpenFailure(bad).toStdString();
    Write(bad, bytes.left(1000));
    EXPECT_NE(OpenFailure(bad), QString());
    EXPECT_NE(OpenFailure(scratch.Path(u""_s)), QString()) << "a folder";
    EXPECT_EQ(OpenFailure(good), QString()) << "the failures leave the engine usable";
}

TEST_F(DatabaseTest, CreatingNeverOverwrites)
{
    const QString path = scratch.Path(u"KEPT"_s);
    Write(path, "kept");
    TpFIBDatabase other;
    TpFIBTransaction otherTransaction;
    Prepare(other, otherTransaction, path);
    EXPECT_THROW(other.CreateDatabase(), DatabaseError);
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "kept");
}

TEST_F(DatabaseTest, MadeFilesAreOwnedBySysdbaAndWriteThrough)
{
    EXPECT_EQ(Ask(u"select trim(MON$OWNER) from MON$DATABASE"_s).toString(), u"SYSDBA"_s);
    EXPECT_EQ(Ask(u"select MON$FORCED_WRITES from MON$DATABASE"_s).toInt(), 1);
    EXPECT_EQ(Ask(u"select MON$PAGE_SIZE from MON$DATABASE"_s).toInt(), 16384);
    EXPECT_EQ(Ask(u"select MON$SQL_DIALECT from MON$DATABASE"_s).toInt(), 3);
}

TEST_F(DatabaseTest, ReadOnlyModeRefusesWritesUntilItIsTurnedOff)
{
    RunScript(database, u"create table T (ID integer);"_s);
    database.SetReadOnlyMode(true);
    const QString text = FailureOf([&] { RunScript(database, u"insert into T values (1);"_s); });
    EXPECT_TRUE(text.contains(u"read-only"_s)) << text.toStdString();
    database.SetReadOnlyMode(false);
    EXPECT_EQ(FailureOf([&] { RunScript(database, u"insert into T values (1);"_s); }), QString());
}

TEST_F(DatabaseTest, TwoConnectionsSeeEachOthersCommitsAndNeverWait)
{
    RunScript(database, u"create table T (ID integer not null primary key, N integer);"
                        "commit; insert into T values (1, 0);"_s);
    TpFIBDatabase other;
    TpFIBTransaction otherTransaction;
    Prepare(other, otherTransaction, database.DBName());
    other.SetConnected(true);
    otherTransaction.SetActive(true);
    TpFIBDataSet mine, theirs;
    for (TpFIBDataSet *dataSet : {&mine, &theirs}) {
        dataSet->SelectSQL() = QStringList{u"select ID, N from T"_s};
        dataSet->UpdateSQL() = QStringList{u"update T set N = :N where ID = :OLD_ID"_s};
    }
    mine.SetDatabase(&database);
    theirs.SetDatabase(&other);
    theirs.SetAutoCommit(true);
    mine.Open();
    theirs.Open();
    mine.Edit();
    mine.FieldByName(u"N"_s).SetAsInteger(1);
    mine.Post(); // not committed
    theirs.Edit();
    theirs.FieldByName(u"N"_s).SetAsInteger(2);
    const QString text = FailureOf([&] { theirs.Post(); });
    EXPECT_TRUE(text.contains(u"update conflicts with concurrent update"_s)) << text.toStdString();
    EXPECT_EQ(theirs.State(), DataSetState::Edit);
    transaction.CommitRetaining();
    theirs.Post();
    mine.FullRefresh();
    EXPECT_EQ(mine.FieldByName(u"N"_s).AsInteger(), 2);
}

TEST_F(DatabaseTest, LockFilesAreOpenToEveryUserAndHoldTheirDiskSpace)
{
    const QString folder = qEnvironmentVariable("FIREBIRD_LOCK");
    const QFileInfoList files = QDir(folder).entryInfoList({u"fb*"_s}, QDir::Files);
    EXPECT_FALSE(files.isEmpty());
    struct stat status = {};
    EXPECT_EQ(::stat(QFile::encodeName(folder).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0777U);
    for (const QFileInfo &file : files) {
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

/// Two closed databases in a folder: `path`, and beside it one that is read-only.
void MakeReadWriteAndReadOnly(const QString &path)
{
    for (const bool readOnly : {true, false}) {
        const QString file = readOnly ? path + u".readonly"_s : path;
        EXPECT_TRUE(QFile::copy(EmptyDatabase(), file));
        TpFIBDatabase database;
        TpFIBTransaction transaction;
        Prepare(database, transaction, file);
        database.SetConnected(true);
        database.SetReadOnlyMode(readOnly);
    }
}

TEST(LockFolder, WithoutASharedOneOnlyReadOnlyDatabasesOpen)
{
    // The new process runs this test from its start, and must not load the engine before it chooses the folder.
    const ScratchFolder scratch;
    QString path = qEnvironmentVariable("LUMIVARA_TEST_PATH");
    if (path.isEmpty()) {
        path = scratch.Path(u"TEST.FDB"_s);
        MakeReadWriteAndReadOnly(path);
        qputenv("LUMIVARA_TEST_PATH", QFile::encodeName(path));
    }
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::exit(OpenWithoutASharedLockFolder(path)), testing::ExitedWithCode(0), "");
    qunsetenv("LUMIVARA_TEST_PATH");
}

TEST_F(DatabaseTest, PartsDieInAnyOrder)
{
    RunScript(database, u"create table T (ID integer); commit; insert into T values (1); insert into T values (2);"_s);
    auto connection = std::make_unique<TpFIBDatabase>();
    auto own = std::make_unique<TpFIBTransaction>();
    Prepare(*connection, *own, database.DBName());
    connection->SetConnected(true);
    own->SetActive(true);
    auto source = std::make_unique<TDataSource>();
    auto dataSet = std::make_unique<TpFIBDataSet>();
    dataSet->SetDatabase(connection.get());
    dataSet->SelectSQL() = QStringList{u"select ID from T"_s};
    source->SetDataSet(dataSet.get());
    dataSet->Open();
    connection.reset();
    EXPECT_THROW(dataSet->FetchAll(), DatabaseError) << "the cursor is gone, the first row stays";
    EXPECT_EQ(dataSet->FieldByName(u"ID"_s).AsInteger(), 1);
    own.reset();
    dataSet.reset();
    EXPECT_EQ(source->DataSet(), nullptr);
}

TEST_F(DatabaseTest, WhatIsNotOpenRefusesToWork)
{
    TpFIBDataSet query;
    Use(query, u"select 1 from RDB$DATABASE"_s);
    transaction.SetActive(false);
    EXPECT_THROW(query.Open(), DatabaseError);
    database.SetConnected(false);
    EXPECT_THROW(query.Open(), DatabaseError);
    EXPECT_THROW(transaction.SetActive(true), DatabaseError);
    EXPECT_FALSE(query.Active());
}

} // namespace
