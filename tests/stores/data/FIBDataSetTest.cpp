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
                            "commit work; insert into GROUPS values (1, 'một'); insert into GROUPS values (2, 'hai');"
                            "insert into GROUPS values (3, 'ba'); insert into ITEMS values (10, 1, 'a');"
                            "insert into ITEMS values (11, 1, 'b'); insert into ITEMS values (20, 2, 'c');"_s);
        Use(master, u"select ID_GRP, NAME_GRP from GROUPS order by ID_GRP"_s);
        Use(detail, u"select ID_ITM, BODY from ITEMS where ID_GRP = :ID_GRP order by ID_ITM"_s);
        masterSource.SetDataSet(&master);
        detailSource.SetDataSet(&detail);
        detail.SetDataSource(&masterSource);
        detailSource.OnDataChange = [this] { ++changes; };
        master.AfterScroll = [this] { ++scrolls; };
        master.Open();
        detail.Open();
    }
    int Item() { return detail.FieldByName(u"ID_ITM"_s).AsInteger(); }

    TpFIBDataSet master, detail;
    TDataSource masterSource, detailSource;
    int changes = 0, scrolls = 0;
};

TEST_F(MasterDetail, DetailFollowsTheMaster)
{
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
    EXPECT_TRUE(detail.Active() && detail.IsEmpty());
}

TEST_F(MasterDetail, ASelectThatIsSearchedInPiecesPausesOnlyForWhoResumesIt)
{
    TpFIBDataSet found;
    Use(found, u"select ID_ITM from ITEMS where ID_GRP = 1"_s);
    found.SearchInPieces(u"select ID_ITM, iif(ID_GRP = 1, 1, 0) IS_FOUND from ITEMS"_s);
    found.Open();
    found.FetchAll();
    EXPECT_EQ(found.RecordCount(), 2);
    EXPECT_EQ(found.Fields().size(), 1U);
    found.Close();
    found.SelectSQL() = QStringList{u"select ID_ITM from ITEMS"_s};
    found.Open();
    found.FetchAll();
    EXPECT_EQ(found.RecordCount(), 3) << "another select";
    // Firebird's own tables have some hundred rows.
    found.SearchInPieces(u"select ID_ITM, 1 IS_FOUND from ITEMS union all select 0, 0 from RDB$FIELDS union all "
                         "select ID_ITM + 1, 1 from ITEMS"_s);
    int pauses = 0;
    for (const bool resumes : {false, true}) {
        found.Close();
        found.OnPause = resumes ? std::function<void()>([&] { ++pauses; }) : nullptr;
        found.Open();
        EXPECT_TRUE(found.FetchAhead(2));
        EXPECT_EQ(found.FetchAhead(5), !resumes);
        EXPECT_EQ(found.IsPaused(), resumes);
        while (found.IsPaused())
            found.Resume();
        EXPECT_FALSE(found.FetchAhead(6));
        EXPECT_EQ(found.RecordCount(), 6);
    }
    EXPECT_GT(pauses, 1);
    found.Close();
    found.Open();
    EXPECT_FALSE(found.FetchAhead(5));
    found.Last();
    found.Resume(); // which was arranged for
    EXPECT_TRUE(found.Eof()) << "after the end was reached during a pause";
}

TEST_F(MasterDetail, DisabledControlsAreToldOnceAtTheEndAndDisabledScrollEventsNever)
{
    master.DisableControls();
    master.DisableControls();
    master.Last();
    master.Prior();
    master.EnableControls();
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(Item(), 10);
    master.EnableControls();
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(Item(), 20);
    const int before = scrolls;
    master.DisableScrollEvents();
    master.Prior();
    EXPECT_EQ(Item(), 10);
    EXPECT_EQ(scrolls, before);
    master.EnableScrollEvents();
    master.Next();
    EXPECT_EQ(scrolls, before + 1);
}

TEST_F(MasterDetail, AFailingHandlerReachesTheCallerAndSparesTheOthers)
{
    detailSource.OnDataChange = [] { throw DatabaseError(u"no"_s); };
    int seen = 0; // by the master's own handler: the detail stands on the new row already
    masterSource.OnDataChange = [&] { seen = Item(); };
    EXPECT_EQ(FailureOf([&] { master.Next(); }), u"no"_s);
    EXPECT_EQ(seen, 20);
    detailSource.OnDataChange = nullptr;
    masterSource.OnDataChange = [&] { master.Close(); };
    master.Next();
    EXPECT_FALSE(master.Active());
}

TEST_F(StoreTest, ColumnsArriveByType)
{
    RunScript(database, u"create table T (S smallint, I integer, B bigint, D timestamp, V varchar(127), C blob, "
                        "N numeric(9,2), X char(3)); commit; insert into T values (-3, 2000000000, -5000000000, "
                        "'2024-02-29 23:59:58.123', 'Pāḷi ṭ', 'x', 1.5, 'a'); insert into T default values;"_s);
    TpFIBDataSet query;
    Use(query, u"select T.*, 1 = 1 as TRUTH from T"_s);
    query.Open();
    const std::pair<QString, QString> texts[]{
        {u"S"_s, u"-3"_s},     {u"I"_s, u"2000000000"_s}, {u"B"_s, u"-5000000000"_s},
        {u"V"_s, u"Pāḷi ṭ"_s}, {u"C"_s, u"x"_s},          {u"N"_s, u"1.50"_s},
        {u"X"_s, u"a"_s}}; // padding is no part of a text
    for (const auto &[column, text] : texts)
        EXPECT_EQ(query.FieldByName(column).AsString(), text);
    EXPECT_THROW(query.FieldByName(u"B"_s).AsInteger(), DatabaseError);
    EXPECT_EQ(query.FieldByName(u"D"_s).AsDateTime(), QDateTime(QDate(2024, 2, 29), QTime(23, 59, 58, 123)));
    EXPECT_EQ(query.FieldByName(u"V"_s).Size(), 127);
    EXPECT_EQ(query.FieldByName(u"TRUTH"_s).AsInteger(), 1);
    query.Next();
    for (const auto &field : query.Fields()) {
        EXPECT_EQ(field->IsNull() && field->AsString().isEmpty() && field->AsInteger() == 0,
                  field->FieldName() != u"TRUTH")
            << field->FieldName().toStdString();
    }
}

TEST_F(StoreTest, TextsOfEveryCharacterSetArriveWhole)
{
    RunScript(database, u"create table T (U varchar(9) character set utf8, W varchar(9) character set win1258,"
                        " F varchar(9) character set unicode_fss, T blob sub_type text character set utf8, R blob);"_s);
    const auto connectBy = [this](const QString &characterSet) {
        database.SetConnected(false);
        database.SetCharSet(characterSet);
        database.SetConnected(true);
        transaction.SetActive(true);
    };
    const QString text = u"ṭ\U0001F600 \U0010FFFD한x"_s;
    connectBy(u"UTF8"_s);
    RunScript(database, u"insert into T values ('%1', 'é', '%1', '%1%1', x'EDA0BDEDB880');"_s.arg(text));
    connectBy(u"UNICODE_FSS"_s);
    TpFIBDataSet query;
    Use(query, u"select U, W, F, T, R from T"_s);
    query.Open();
    QList<QByteArray> values;
    for (const auto &field : query.Fields())
        values.append(field->AsBytes());
    const QByteArray bytes = text.toUtf8();
    EXPECT_EQ(values, (QList{bytes, u"é"_s.toUtf8(), bytes, bytes + bytes, "\xED\xA0\xBD\xED\xB8\x80"_ba}))
        << "what is no text stays as it is";
    EXPECT_TRUE(query.Locate(u"U"_s, text));
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
    const QList<int> none, both{1, 2};
    const std::pair<QVariant, QList<int>> cases[]{{u"%phẩm%"_s, both}, {u"%it's \"%"_s, none},
                                                  {u"%i"_s, both},     {QVariant(), none},
                                                  {3, none},           {u"%\U0001F600%"_s, none}};
    for (const auto &[value, ids] : cases)
        EXPECT_EQ(Found(value), ids) << qPrintable(value.toString());
    Use(query, u"select ID from T where AT_TIME = :SEARCH_TEXT"_s);
    EXPECT_EQ(Found(QDateTime(QDate(2020, 1, 2), QTime(3, 4, 5))), QList<int>{1});
    Use(query, u"select cast(NAME as varchar(2)) ID from T where NAME starting with :SEARCH_TEXT"_s);
    EXPECT_TRUE(FailureOf([&] { Found(u"P"_s); }).contains(u"string right truncation"_s)) << "the select's own failure";
    EXPECT_FALSE(query.Active());
    Use(query, u"select ID from T where ID = :SEARCH_TEXT or ID = :SEARCH_TEXT + 1 order by ID"_s);
    EXPECT_EQ(Found(u"2"_s), (QList<int>{2, 3}));
    EXPECT_EQ(Found(QString(100000, u'1')), none) << "no number is that long";
    EXPECT_THROW(query.ParamByName(u"M"_s), DatabaseError);
}

TEST_F(ParametersTest, ATextLongerThanTheParameterMatchesNothing)
{
    RunScript(database, u"set term ^ ; create procedure P (N varchar(20) character set utf8) returns (ID integer) as "
                        "begin for select ID from T where NAME = :N into :ID do suspend; end^ set term ; ^ commit;"_s);
    for (const QString &source :
         {u"T where lower(NAME) like :SEARCH_TEXT"_s, u"T where NAME starting with :SEARCH_TEXT"_s,
          u"T where NAME = :SEARCH_TEXT"_s, u"P(:SEARCH_TEXT)"_s}) {
        Use(query, u"select ID from %1 order by ID"_s.arg(source));
        for (const int size : {20, 21, 59, 60, 61, 381, 10000, 40000, 100000})
            for (const QChar letter : {u'x', u'ẩ'})
                EXPECT_EQ(Found(QString(size, letter)), QList<int>()) << size << source.toStdString();
        EXPECT_TRUE(Found(u"%%%"_s).contains(3)) << "the statement is usable afterwards";
    }
}

TEST_F(StoreTest, ARowThatFailsIsToldBehindThoseBeforeIt)
{
    RunScript(database, u"set term ^ ; create procedure P returns (ID integer) as begin ID = 1;"
                        "while (ID < 151) do begin ID = ID + 1; suspend; end ID = 1 / (ID - 151); end^ set term ; ^"_s);
    TpFIBDataSet query;
    Use(query, u"select ID from P"_s);
    for (int opening = 0; opening < 2; ++opening) {
        query.Open();
        EXPECT_TRUE(query.Locate(u"ID"_s, 149)) << "found before the failure comes";
        EXPECT_TRUE(FailureOf([&] { query.FetchAll(); }).contains(u"zero"_s));
        EXPECT_EQ(query.RecordCount(), 150);
        query.MoveTo(149);
        EXPECT_EQ(query.FieldByName(u"ID"_s).AsInteger(), 151);
        query.Close();
        query.Open();
        EXPECT_TRUE(query.Locate(u"ID"_s, 149));
        query.Close(); // with the failure untold
    }
}

TEST_F(StoreTest, LocateMovesToTheFirstRowThatMatchesOrNowhere)
{
    RunScript(database, u"create table T (ID integer, NAME varchar(20)); commit; insert into T values (2, null);"
                        "insert into T values (1, 'Ṭhāna'); insert into T values (3, 'Ba mươi');"_s);
    TpFIBDataSet query;
    Use(query, u"select ID, NAME from T order by ID"_s);
    query.Open();
    constexpr LocateOption anyCase = LocateOption::CaseInsensitive, partial = LocateOption::PartialKey;
    const std::tuple<QString, QVariant, LocateOptions, int> cases[]{{u"ID"_s, 3, {}, 2},
                                                                    {u"id"_s, u"3"_s, {}, 2},
                                                                    {u"ID"_s, 4, {}, -1},
                                                                    {u"ID"_s, u"x"_s, {}, -1},
                                                                    {u"NAME"_s, u"Ba mươi"_s, {}, 2},
                                                                    {u"NAME"_s, u"ba mươi"_s, {}, -1},
                                                                    {u"NAME"_s, u"Ba"_s, {}, -1},
                                                                    {u"NAME"_s, u"ṭHĀNA"_s, anyCase, 0},
                                                                    {u"NAME"_s, u"Ṭhā"_s, partial, 0},
                                                                    {u"NAME"_s, {}, {}, 1},
                                                                    {u"NAME"_s, u""_s, {}, -1},
                                                                    {u"NAME"_s, u"BA M"_s, partial | anyCase, 2}};
    for (const auto &[field, value, options, row] : cases) {
        query.MoveTo(1);
        EXPECT_EQ(query.Locate(field, value, options), row >= 0) << value.toString().toStdString();
        EXPECT_EQ(query.RecNo(), row >= 0 ? row : 1) << value.toString().toStdString();
    }
    EXPECT_THROW(query.Locate(u"NONE"_s, 1), DatabaseError);
}

} // namespace
