#include "stores/engine/Statement.h"
#include "support/StoreSupport.h"

using namespace Qt::StringLiterals;

namespace {

class EditCycle : public StoreTest
{
protected:
    void SetUp() override
    {
        StoreTest::SetUp();
        RunScript(database, u"create table L (K integer not null primary key, LABEL varchar(10));"
                            "create table T (ID integer not null primary key, NAME varchar(10), K integer, BODY blob,"
                            "  OLD_STYLE varchar(10) character set utf8);"
                            "commit; insert into L values (1, 'one'); insert into L values (2, 'two');"
                            "insert into T values (5, 'năm', 1, 'body', null);"_s);
        const QString select = u"select T.ID, T.NAME, T.K, T.BODY, T.OLD_STYLE, L.LABEL from T join L on L.K = T.K"_s;
        Use(rows, select + u" order by T.ID"_s);
        rows.RefreshSQL() = QStringList{select, u"where T.ID = :OLD_ID"_s};
        rows.InsertSQL() = QStringList{u"insert into T (ID, NAME, K, BODY, OLD_STYLE)"_s,
                                       u"values (:ID, :NAME, :K, :BODY, :OLD_STYLE)"_s};
        rows.UpdateSQL() = QStringList{u"update T set ID = :ID, NAME = :NAME, K = :K where ID = :OLD_ID"_s};
        rows.DeleteSQL() = QStringList{u"delete from T where ID = :OLD_ID"_s};
        rows.SetAutoCommit(true);
        rows.Open();
    }
    TField &Field(const QString &name) { return rows.FieldByName(name); }
    int Id() { return Field(u"ID"_s).AsInteger(); }
    void Add(int id, const QByteArray &body = {})
    {
        rows.Insert();
        Field(u"ID"_s).SetAsInteger(id);
        Field(u"K"_s).SetAsInteger(2);
        Field(u"BODY"_s).SetAsBytes(body);
        rows.Post();
    }
    void Rename(const QString &name)
    {
        rows.Edit();
        Field(u"NAME"_s).SetAsString(name);
    }
    /// What a rollback leaves: only what was committed.
    QString Committed(const QString &select)
    {
        transaction.RollbackRetaining();
        return Ask(select).toString();
    }

    TpFIBDataSet rows;
};

TEST_F(EditCycle, ARefusedCommitIsRolledBackAtOnce)
{
    // A table that somebody reads can't be dropped, which is told at the commit.
    RunScript(database, u"create table U (A integer); commit; insert into U values (1);"_s);
    TpFIBDatabase other;
    TpFIBTransaction otherTransaction;
    Prepare(other, otherTransaction, database.DBName());
    other.SetConnected(true);
    otherTransaction.SetActive(true);
    TpFIBDataSet reader;
    reader.SetDatabase(&other);
    reader.SelectSQL() = QStringList{u"select A from U"_s};
    reader.Open();
    Rename(u"no"_s);
    Statement(database.Attachment(), transaction.Native(), u"drop table U"_s).Execute(transaction.Native(), {});
    EXPECT_NE(FailureOf([&] { rows.Post(); }), QString());
    EXPECT_EQ(rows.State(), DataSetState::Edit);
    EXPECT_EQ(Field(u"NAME"_s).AsString(), u"no"_s);
    EXPECT_EQ(Ask(u"select NAME from T"_s).toString(), u"năm"_s);
    Field(u"NAME"_s).SetAsString(u"yes"_s);
    rows.Post();
    EXPECT_EQ(Committed(u"select NAME from T"_s), u"yes"_s);
}

TEST_F(EditCycle, DeleteAsksFirstAndMovesToTheNeighbour)
{
    Add(6);
    rows.First();
    rows.BeforeDelete = [] { throw SilentAbort(); };
    EXPECT_THROW(rows.Delete(), SilentAbort);
    EXPECT_EQ(rows.RecordCount(), 2);
    rows.BeforeDelete = nullptr;
    rows.Delete();
    EXPECT_EQ(Id(), 6);
    rows.Delete();
    EXPECT_EQ(rows.RecNo(), -1);
    EXPECT_EQ(Committed(u"select count(*) from T"_s), u"0"_s);
    EXPECT_THROW(rows.Delete(), DatabaseError);
}

TEST_F(EditCycle, MovesPostWhatIsModifiedAndCancelWhatIsNot)
{
    Add(6);
    rows.First();
    rows.Edit();
    rows.Next();
    EXPECT_EQ(rows.RecNo(), 1);
    Rename(u"new"_s);
    rows.Prior();
    EXPECT_EQ(rows.State(), DataSetState::Browse);
    EXPECT_EQ(Committed(u"select NAME from T where ID = 6"_s), u"new"_s);
    Rename(u"lost"_s);
    rows.Close();
    EXPECT_EQ(Committed(u"select NAME from T where ID = 5"_s), u"năm"_s);
}

TEST_F(EditCycle, TextsAreStoredWholeOrRefused)
{
    EXPECT_THROW(Field(u"NAME"_s).SetAsString(u"x"_s), DatabaseError) << "not in edit state";
    rows.Edit();
    EXPECT_THROW(Field(u"NAME"_s).SetAsString(QString(11, u'ế')), DatabaseError);
    EXPECT_THROW(Field(u"K"_s).SetAsString(u"1x"_s), DatabaseError);
    EXPECT_FALSE(rows.Modified());
    const QString smile = u"\U0001F600"_s; // beyond the first plane of characters
    for (const QString &text : {QString(10, u'ế'), smile}) {
        Rename(text);
        rows.Post();
        EXPECT_EQ(Committed(u"select NAME from T"_s), text);
    }
    rows.Edit();
    Field(u"OLD_STYLE"_s).SetAsString(smile);
    EXPECT_TRUE(FailureOf([&] { rows.Post(); }).contains(u"above U+FFFF"_s));
    EXPECT_EQ(rows.State(), DataSetState::Edit);
}

TEST_F(EditCycle, BlobsComeBackByteForByte)
{
    int id = 100;
    QByteArray buffer("left over");
    for (const int size : {0, 1, 65534, 65535, 65536, 3 * 1024 * 1024}) {
        QByteArray bytes(size, Qt::Uninitialized);
        for (int i = 0; i < size; ++i)
            bytes[i] = static_cast<char>(i * 31 + i / 256); // NUL and all other values
        Add(++id, bytes);
        EXPECT_TRUE(Field(u"BODY"_s).AsBytes() == bytes) << size;
        rows.FullRefresh();
        EXPECT_EQ(Id(), id);
        rows.BlobInto(rows.RecNo(), Field(u"BODY"_s).Index(), buffer);
        EXPECT_TRUE(Field(u"BODY"_s).AsBytes() == bytes && buffer == bytes) << size;
    }
}

TEST_F(EditCycle, RefreshStaysOnTheRecord)
{
    Add(7);
    RunScript(database, u"insert into T values (6, 'x', 1, null, null);"_s);
    rows.FullRefresh();
    EXPECT_EQ(Id(), 7);
    RunScript(database, u"delete from T where ID = 7;"_s);
    rows.FullRefresh();
    EXPECT_EQ(Id(), 6) << "the record is gone: the last row";
}

} // namespace
