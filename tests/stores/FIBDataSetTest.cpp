#include "support/StoreSupport.h"

using namespace Qt::StringLiterals;

namespace {

class MasterDetail : public StoreTest
{
protected:
    void SetUp() override
    {
        StoreTest::SetUp();
        RunScript(database, u"create table GROUPS (ID_GRP integer not null primary key, NAME_GRP varchar(10));"
                            "create table ITEMS (ID_ITM integer not null primary key, ID_GRP integer, BODY blob);"
                            "commit work;"
                            "insert into GROUPS values (1, 'một'); insert into GROUPS values (2, 'hai');"
                            "insert into GROUPS values (3, 'ba');"
                            "insert into ITEMS values (10, 1, 'a'); insert into ITEMS values (11, 1, 'b');"
                            "insert into ITEMS values (20, 2, 'c');"_s);
        Use(master, u"select ID_GRP, NAME_GRP from GROUPS order by ID_GRP"_s);
        Use(detail, u"select ID_ITM, BODY from ITEMS where ID_GRP = :ID_GRP order by ID_ITM"_s);
        masterSource.SetDataSet(&master);
        detailSource.SetDataSet(&detail);
        detail.SetDataSource(&masterSource);
        detailSource.OnDataChange = [this] { ++changes; };
    }
    int Item() { return detail.FieldByName(u"ID_ITM"_s).AsInteger(); }

    TpFIBDataSet master, detail;
    TDataSource masterSource, detailSource;
    int changes = 0;
};

TEST_F(MasterDetail, DetailFollowsTheMaster)
{
    master.Open();
    detail.Open();
    EXPECT_EQ(changes, 1);
    detail.FetchAll();
    EXPECT_EQ(detail.RecordCount(), 2);
    EXPECT_EQ(detail.FieldByName(u"body"_s).AsString(), u"a"_s);
    master.Next();
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(Item(), 20);
    master.Next();
    EXPECT_EQ(changes, 3) << "an empty detail is a change as well";
    EXPECT_TRUE(detail.IsEmpty());
    EXPECT_TRUE(master.Locate(u"NAME_GRP"_s, u"một"_s));
    EXPECT_EQ(Item(), 10);
    master.Next();
    master.FullRefresh();
    EXPECT_EQ(Item(), 20);
    master.Close();
    EXPECT_TRUE(detail.Active());
    EXPECT_TRUE(detail.IsEmpty());
}

TEST_F(MasterDetail, DisabledControlsAreToldOnceAtTheEnd)
{
    master.Open();
    detail.Open();
    changes = 0;
    master.DisableControls();
    master.DisableControls();
    master.Last();
    master.Prior();
    master.EnableControls();
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(Item(), 10);
    master.EnableControls();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(Item(), 20);
}

TEST_F(MasterDetail, DisabledScrollEventsLeaveTheDetailFollowing)
{
    int scrolls = 0;
    master.AfterScroll = [&] { ++scrolls; };
    master.Open();
    detail.Open();
    EXPECT_EQ(scrolls, 1);
    master.DisableScrollEvents();
    master.Next();
    EXPECT_EQ(Item(), 20);
    EXPECT_EQ(scrolls, 1);
    master.EnableScrollEvents();
    master.Next();
    EXPECT_EQ(scrolls, 2);
}

TEST_F(MasterDetail, AFailingHandlerReachesTheCallerAndSparesTheOthers)
{
    master.Open();
    detail.Open();
    detailSource.OnDataChange = [] { throw DatabaseError(u"no"_s); };
    int seen = 0; // by the master's own handler: the detail stands on the new row already
    masterSource.OnDataChange = [&] { seen = Item(); };
    EXPECT_EQ(FailureOf([&] { master.Next(); }), u"no"_s);
    EXPECT_EQ(Item(), 20);
    EXPECT_EQ(seen, 20);
}

TEST_F(MasterDetail, AHandlerMayCloseTheDataSet)
{
    masterSource.OnDataChange = [&] { master.Close(); };
    master.Open();
    EXPECT_FALSE(master.Active());
}

class ValuesTest : public StoreTest
{};

TEST_F(ValuesTest, ColumnsArriveByType)
{
    RunScript(database, u"create table T (S smallint, I integer, B bigint, D timestamp, V varchar(127), C blob, "
                        "N numeric(9,2), X char(3)); commit; insert into T values (-3, 2000000000, -5000000000, "
                        "'2024-02-29 23:59:58.123', 'Pāḷi ṭ', 'x', 1.5, 'a'); insert into T default values;"_s);
    TpFIBDataSet query;
    Use(query, u"select T.*, 1 = 1 as TRUTH from T"_s);
    query.Open();
    EXPECT_EQ(query.FieldByName(u"S"_s).AsInteger(), -3);
    EXPECT_EQ(query.FieldByName(u"S"_s).Type(), FieldType::SmallInt);
    EXPECT_EQ(query.FieldByName(u"I"_s).Value(), QVariant(2000000000));
    EXPECT_EQ(query.FieldByName(u"B"_s).Value().toLongLong(), -5000000000LL);
    EXPECT_THROW(query.FieldByName(u"B"_s).AsInteger(), DatabaseError);
    EXPECT_EQ(query.FieldByName(u"D"_s).AsDateTime(), QDateTime(QDate(2024, 2, 29), QTime(23, 59, 58, 123)));
    EXPECT_EQ(query.FieldByName(u"V"_s).AsString(), u"Pāḷi ṭ"_s);
    EXPECT_EQ(query.FieldByName(u"V"_s).Size(), 127);
    EXPECT_EQ(query.FieldByName(u"C"_s).Value(), QVariant(QByteArray("x")));
    EXPECT_EQ(query.FieldByName(u"N"_s).AsString(), u"1.50"_s);
    EXPECT_EQ(query.FieldByName(u"X"_s).AsString(), u"a"_s) << "padding is no part of a text";
    EXPECT_EQ(query.FieldByName(u"TRUTH"_s).AsInteger(), 1);
    query.Next();
    for (const auto &field : query.Fields()) {
        if (field->FieldName() == u"TRUTH"_s)
            continue;
        EXPECT_TRUE(field->IsNull()) << field->FieldName().toStdString();
        EXPECT_EQ(field->AsString(), QString());
        EXPECT_EQ(field->AsInteger(), 0);
    }
}

TEST_F(ValuesTest, PersistentFieldsMustBeInTheStatement)
{
    TpFIBDataSet query;
    query.setObjectName(u"qry"_s);
    Use(query, u"select 1 A, 2 B from RDB$DATABASE"_s);
    TField &declared = query.AddField(u"B"_s, FieldType::WideString, 5);
    EXPECT_EQ(declared.objectName(), u"qryB"_s);
    query.Open();
    EXPECT_EQ(declared.Value(), QVariant(u"2"_s)) << "the declared type counts";
    EXPECT_EQ(query.FieldByName(u"a"_s).AsInteger(), 1);
    query.Close();
    query.AddField(u"C"_s, FieldType::Integer);
    query.SelectSQL() = QStringList{u"select 1 A from RDB$DATABASE"_s};
    EXPECT_NE(FailureOf([&] { query.Open(); }), QString());
    EXPECT_FALSE(query.Active());
}

class ParametersTest : public StoreTest
{
protected:
    void SetUp() override
    {
        StoreTest::SetUp();
        RunScript(database, u"create table T (ID integer, NAME varchar(20), AT_TIME timestamp); commit;"
                            "insert into T values (1, 'Phẩm I', '2020-01-02 03:04:05');"
                            "insert into T values (2, 'phẩm II', null); insert into T values (3, '%%%', null);"_s);
        Use(query, u"select ID from T where lower(NAME) like :SEARCH_TEXT order by ID"_s);
    }
    QList<int> Found(const QVariant &value)
    {
        query.Close();
        query.ParamByName(u"Search_Text"_s).SetValue(value);
        query.Open();
        QList<int> ids;
        for (; !query.Eof(); query.Next())
            ids.append(query.FieldByName(u"ID"_s).AsInteger());
        return ids;
    }
    TpFIBDataSet query;
};

TEST_F(ParametersTest, TakeValuesOfAnyKind)
{
    EXPECT_EQ(Found(u"%phẩm%"_s), (QList<int>{1, 2}));
    EXPECT_EQ(Found(u"%it's \"%"_s), QList<int>());
    EXPECT_EQ(Found(u"%i"_s), (QList<int>{1, 2}));
    EXPECT_EQ(Found(QVariant()), QList<int>());
    EXPECT_EQ(Found(3), QList<int>());
    EXPECT_EQ(Found(u"%\U0001F600%"_s), QList<int>());
    Use(query, u"select ID from T where AT_TIME = :SEARCH_TEXT"_s);
    EXPECT_EQ(Found(QDateTime(QDate(2020, 1, 2), QTime(3, 4, 5))), QList<int>{1});
}

TEST_F(ParametersTest, ATextLongerThanTheParameterMatchesNothing)
{
    for (const QString &condition : {u"lower(NAME) like"_s, u"NAME starting with"_s, u"NAME ="_s}) {
        Use(query, u"select ID from T where %1 :SEARCH_TEXT order by ID"_s.arg(condition));
        for (int size : {20, 21, 59, 60, 61, 381, 10000, 40000, 100000}) {
            EXPECT_EQ(Found(QString(size, u'x')), QList<int>()) << size << condition.toStdString();
            EXPECT_EQ(Found(QString(size, u'ẩ')), QList<int>()) << size << condition.toStdString();
        }
        EXPECT_EQ(Found(u"%%%"_s).contains(3), true) << "the statement is usable afterwards";
    }
}

TEST_F(ParametersTest, AFailureOfTheSelectItselfIsNotSwallowed)
{
    Use(query, u"select cast(NAME as varchar(2)) ID from T where NAME starting with :SEARCH_TEXT"_s);
    EXPECT_TRUE(FailureOf([&] { Found(u"P"_s); }).contains(u"string right truncation"_s));
    EXPECT_FALSE(query.Active());
}

TEST_F(ParametersTest, OneNameTwiceTakesOneValue)
{
    Use(query, u"select ID from T where ID = :N or ID = :N + 1 order by ID"_s);
    query.ParamByName(u"N"_s).SetAsString(u"2"_s);
    query.Open();
    query.FetchAll();
    EXPECT_EQ(query.RecordCount(), 2);
    EXPECT_THROW(query.ParamByName(u"M"_s), DatabaseError);
    query.Close();
    query.ParamByName(u"N"_s).SetAsString(QString(100000, u'1'));
    query.Open();
    EXPECT_TRUE(query.IsEmpty()) << "no number is that long";
}

class LocateTest : public StoreTest
{
protected:
    void SetUp() override
    {
        StoreTest::SetUp();
        RunScript(database, u"create table T (ID integer, NAME varchar(20)); commit;"
                            "insert into T values (1, 'Ṭhāna'); insert into T values (2, null);"
                            "insert into T values (3, 'Ba mươi');"_s);
        Use(query, u"select ID, NAME from T order by ID"_s);
        query.Open();
    }
    TpFIBDataSet query;
};

TEST_F(LocateTest, MovesToTheFirstRowThatMatches)
{
    const struct
    {
        QString field;
        QVariant value;
        LocateOptions options;
        int row; // -1: not found
    } cases[] = {
        {u"ID"_s, 3, {}, 2},
        {u"id"_s, u"3"_s, {}, 2},
        {u"ID"_s, 4, {}, -1},
        {u"ID"_s, u"x"_s, {}, -1},
        {u"NAME"_s, u"Ba mươi"_s, {}, 2},
        {u"NAME"_s, u"ba mươi"_s, {}, -1},
        {u"NAME"_s, u"Ba"_s, {}, -1},
        {u"NAME"_s, u"ṭHĀNA"_s, LocateOption::CaseInsensitive, 0},
        {u"NAME"_s, u"Ṭhā"_s, LocateOption::PartialKey, 0},
        {u"NAME"_s, u"BA M"_s, LocateOption::PartialKey | LocateOption::CaseInsensitive, 2},
        {u"NAME"_s, QVariant(), {}, 1},
        {u"NAME"_s, u""_s, {}, -1},
    };
    for (const auto &each : cases) {
        query.MoveTo(1);
        EXPECT_EQ(query.Locate(each.field, each.value, each.options), each.row >= 0)
            << each.value.toString().toStdString();
        EXPECT_EQ(query.RecNo(), each.row >= 0 ? each.row : 1) << each.value.toString().toStdString();
    }
    EXPECT_THROW(query.Locate(u"NONE"_s, 1), DatabaseError);
}

TEST_F(LocateTest, TellsOfMovesAloneAndFetchesNoFurtherThanItMust)
{
    TDataSource source;
    source.SetDataSet(&query);
    int changes = 0;
    source.OnDataChange = [&] { ++changes; };
    EXPECT_TRUE(query.Locate(u"ID"_s, 1)) << "it stands there already";
    EXPECT_FALSE(query.Locate(u"ID"_s, 99));
    EXPECT_EQ(changes, 0);
    query.FullRefresh();
    changes = 0;
    EXPECT_EQ(query.RecordCount(), 1);
    EXPECT_TRUE(query.Locate(u"ID"_s, 2));
    EXPECT_EQ(query.RecordCount(), 2);
    EXPECT_EQ(changes, 1);
}

TEST_F(LocateTest, EndsOfTheRowsAreKnown)
{
    EXPECT_TRUE(query.Bof());
    EXPECT_FALSE(query.Eof());
    query.Last();
    EXPECT_FALSE(query.Bof());
    EXPECT_TRUE(query.Eof());
    EXPECT_EQ(query.RecNo(), 2);
    query.Next();
    EXPECT_EQ(query.RecNo(), 2);
    query.First();
    query.Prior();
    EXPECT_EQ(query.RecNo(), 0);
    query.MoveTo(99);
    EXPECT_EQ(query.RecNo(), 2);
    EXPECT_EQ(query.TextAt(0, 1), u"Ṭhāna"_s) << "other rows are read without moving";
    EXPECT_EQ(query.RecNo(), 2);
}

} // namespace
