#include "stores/MemData.h"
#include "support/StoreSupport.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;

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
        Use(rows, u"select T.ID, T.NAME, T.K, T.BODY, T.OLD_STYLE, L.LABEL from T join L on L.K = T.K order by T.ID"_s);
        rows.RefreshSQL() =
            QStringList{u"select T.ID, T.NAME, T.K, T.BODY, T.OLD_STYLE, L.LABEL from T join L on L.K = T.K"_s,
                        u"where T.ID = :OLD_ID"_s};
        rows.InsertSQL() = QStringList{u"insert into T (ID, NAME, K, BODY, OLD_STYLE)"_s,
                                       u"values (:ID, :NAME, :K, :BODY, :OLD_STYLE)"_s};
        rows.UpdateSQL() =
            QStringList{u"update T set ID = :ID, NAME = :NAME, K = :K, BODY = :BODY where ID = :OLD_ID"_s};
        rows.DeleteSQL() = QStringList{u"delete from T where ID = :OLD_ID"_s};
        rows.SetAutoCommit(true);
        rows.Open();
    }
    TField &Field(const QString &name) { return rows.FieldByName(name); }
    void Add(int id, const QByteArray &body = {})
    {
        rows.Insert();
        Field(u"ID"_s).SetAsInteger(id);
        Field(u"K"_s).SetAsInteger(2);
        Field(u"BODY"_s).SetAsBytes(body);
        rows.Post();
    }
    /// What a rollback leaves: only what was committed.
    QVariant Committed(const QString &select)
    {
        transaction.RollbackRetaining();
        return Ask(select);
    }

    TpFIBDataSet rows;
};

TEST_F(EditCycle, ARefusedCommitIsRolledBackAtOnce)
{
    RunScript(database, u"recreate table GUARD_T (X integer); commit;"
                        "set term ^ ; create trigger REFUSE on transaction commit as begin"
                        " if (exists (select 1 from T where NAME = 'no')) then"
                        " execute statement 'drop table NOTHING_SUCH'; end ^ set term ; ^"_s);
    rows.Edit();
    Field(u"NAME"_s).SetAsString(u"no"_s);
    EXPECT_NE(FailureOf([&] { rows.Post(); }), QString());
    EXPECT_EQ(rows.State(), DataSetState::Edit);
    EXPECT_EQ(Field(u"NAME"_s).AsString(), u"no"_s);
    Field(u"NAME"_s).SetAsString(u"yes"_s);
    rows.Post();
    EXPECT_EQ(Committed(u"select NAME from T"_s).toString(), u"yes"_s);
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
    EXPECT_EQ(Field(u"ID"_s).AsInteger(), 6);
    rows.Delete();
    EXPECT_EQ(rows.RecNo(), -1);
    EXPECT_EQ(Committed(u"select count(*) from T"_s).toInt(), 0);
    EXPECT_THROW(rows.Delete(), DatabaseError);
}

TEST_F(EditCycle, MovesPostWhatIsModifiedAndCancelWhatIsNot)
{
    Add(6);
    rows.First();
    rows.Edit();
    rows.Next();
    EXPECT_EQ(rows.RecNo(), 1);
    rows.Edit();
    Field(u"NAME"_s).SetAsString(u"new"_s);
    rows.Prior();
    EXPECT_EQ(rows.State(), DataSetState::Browse);
    EXPECT_EQ(Committed(u"select NAME from T where ID = 6"_s).toString(), u"new"_s);
    rows.Edit();
    Field(u"NAME"_s).SetAsString(u"lost"_s);
    rows.Close();
    EXPECT_EQ(Ask(u"select NAME from T where ID = 5"_s).toString(), u"năm"_s);
}

TEST_F(EditCycle, SettersRefuseWhatDoesNotFit)
{
    EXPECT_THROW(Field(u"NAME"_s).SetAsString(u"x"_s), DatabaseError) << "not in edit state";
    rows.Edit();
    EXPECT_THROW(Field(u"NAME"_s).SetAsString(QString(11, u'ế')), DatabaseError);
    EXPECT_THROW(Field(u"K"_s).SetAsString(u"1x"_s), DatabaseError);
    EXPECT_FALSE(rows.Modified());
    Field(u"NAME"_s).SetAsString(QString(10, u'ế'));
    rows.Post();
    EXPECT_EQ(Field(u"NAME"_s).AsString(), QString(10, u'ế'));
}

TEST_F(EditCycle, CharactersAboveTheFirstPlaneAreStoredWholeOrRefused)
{
    const QString smile = u"\U0001F600"_s;
    rows.Edit();
    Field(u"NAME"_s).SetAsString(smile);
    rows.Post();
    EXPECT_EQ(Ask(u"select NAME from T"_s).toString(), smile);
    rows.Edit();
    Field(u"OLD_STYLE"_s).SetAsString(smile);
    EXPECT_TRUE(FailureOf([&] { rows.Post(); }).contains(u"OLD_STYLE"_s));
    EXPECT_EQ(rows.State(), DataSetState::Edit);
}

TEST_F(EditCycle, BlobsComeBackByteForByte)
{
    int id = 100;
    QByteArray buffer("left over");
    for (int size : {0, 1, 65534, 65535, 65536, 3 * 1024 * 1024}) {
        QByteArray bytes(size, Qt::Uninitialized);
        for (int i = 0; i < size; ++i)
            bytes[i] = static_cast<char>(i * 31 + i / 256); // NUL and all other values
        Add(++id, bytes);
        EXPECT_TRUE(Field(u"BODY"_s).AsBytes() == bytes) << size;
        rows.FullRefresh();
        EXPECT_EQ(Field(u"ID"_s).AsInteger(), id);
        EXPECT_TRUE(Field(u"BODY"_s).AsBytes() == bytes) << size;
        rows.BlobInto(rows.RecNo(), Field(u"BODY"_s).Index(), buffer);
        EXPECT_TRUE(buffer == bytes) << size;
    }
}

TEST_F(EditCycle, WithoutARefreshStatementTheRowShowsWhatWasPosted)
{
    rows.Close();
    rows.RefreshSQL().clear();
    rows.Open();
    Add(6, "bytes");
    EXPECT_EQ(Field(u"BODY"_s).AsBytes(), "bytes");
    EXPECT_EQ(Field(u"ID"_s).AsInteger(), 6);
    EXPECT_EQ(rows.TextAt(0, 1), u"năm"_s);
}

TEST_F(EditCycle, RefreshStaysOnTheRecord)
{
    Add(7);
    RunScript(database, u"insert into T values (6, 'x', 1, null, null);"_s);
    rows.FullRefresh();
    EXPECT_EQ(Field(u"ID"_s).AsInteger(), 7);
    EXPECT_EQ(rows.RecNo(), 2);
    RunScript(database, u"delete from T where ID = 7;"_s);
    rows.FullRefresh();
    EXPECT_EQ(Field(u"ID"_s).AsInteger(), 6) << "the record is gone: the last row";
}

TEST_F(EditCycle, CommitsKeepOtherCursorsOpen)
{
    RunScript(database, u"insert into T select 1000 + row_number() over (), 'x', 1, null, null from RDB$FIELDS;"_s);
    TpFIBDataSet other;
    Use(other, u"select ID from T"_s);
    other.Open();
    rows.Edit();
    Field(u"NAME"_s).SetAsString(u"x"_s);
    rows.Post();
    other.FetchAll();
    EXPECT_GT(other.RecordCount(), 100);
}

TEST(MemData, EventsComeInOrderAndClosingEmpties)
{
    TdxMemData table;
    TDataSource source;
    std::vector<std::string> log;
    const auto note = [&](const char *name) { return [&log, name] { log.emplace_back(name); }; };
    table.AddField(u"ID"_s, FieldType::Integer);
    table.AddField(u"NAME"_s, FieldType::WideString, 5);
    source.SetDataSet(&table);
    source.OnDataChange = note("change");
    table.BeforeOpen = note("before open");
    table.AfterOpen = note("after open");
    table.OnNewRecord = note("new");
    table.BeforePost = note("before post");
    table.AfterPost = note("after post");
    table.AfterScroll = note("scroll");
    table.BeforeClose = note("before close");
    table.AfterClose = note("after close");
    table.Open();
    log.emplace_back("|");
    for (const QString &name : {u"a"_s, u"b"_s}) {
        table.Append();
        table.FieldByName(u"NAME"_s).SetAsString(name);
        table.Post();
    }
    EXPECT_TRUE(table.Locate(u"NAME"_s, u"a"_s));
    table.Edit();
    table.FieldByName(u"ID"_s).SetAsInteger(4);
    table.Post();
    EXPECT_EQ(table.ValueAt(0, 0), QVariant(4));
    table.Delete();
    EXPECT_EQ(table.FieldByName(u"NAME"_s).AsString(), u"b"_s);
    const std::vector<std::string> first(log.begin(), log.begin() + 10);
    EXPECT_THAT(first, ElementsAre("before open", "change", "after open", "scroll", "|", "new", "change", "before post",
                                   "change", "after post"));
    log.clear();
    table.Close();
    EXPECT_THAT(log, ElementsAre("before close", "after close"));
    table.Open();
    EXPECT_TRUE(table.IsEmpty());
}

} // namespace
