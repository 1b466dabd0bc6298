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
    }

    TpFIBDataSet master, detail;
    TDataSource masterSource, detailSource;
};

TEST_F(MasterDetail, DetailFollowsTheMaster)
{
    int changes = 0;
    detailSource.OnDataChange = [&] { ++changes; };
    master.Open();
    detail.Open();
    EXPECT_EQ(changes, 1);
    detail.FetchAll();
    EXPECT_EQ(detail.RecordCount(), 2);
    EXPECT_EQ(detail.FieldByName(u"body"_s).AsString(), u"a"_s);
    master.Next();
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(detail.FieldByName(u"ID_ITM"_s).AsInteger(), 20);
    master.Next();
    EXPECT_EQ(changes, 3) << "an empty detail is a change as well";
    EXPECT_TRUE(detail.IsEmpty());
    EXPECT_TRUE(master.Locate(u"NAME_GRP"_s, u"một"_s));
    EXPECT_EQ(detail.FieldByName(u"ID_ITM"_s).AsInteger(), 10);
}

} // namespace
