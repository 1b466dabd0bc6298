#include "stores/RepeatedStatement.h"

#include "support/StoreSupport.h"

using namespace Qt::StringLiterals;

namespace {

TEST_F(StoreTest, ARepeatedStatementStoresEachRunWholeAndRefusesWhatIsTooLong)
{
    RunScript(database, u"create table T (N integer, NAME varchar(3) character set UNICODE_FSS, B blob sub_type 0);"_s);
    const QByteArray longBlob = QByteArray("0123456789abcdef").repeated(20000);
    {
        RepeatedStatement insert(database.Attachment(), transaction.Native(),
                                 u"insert into T (N, NAME, B) values (?, ?, ?)"_s);
        int number = 0;
        for (const auto &[name, bytes] : {std::pair("ḍḍḍ", longBlob), {"", "b"}, {"\xF0\x9F\x98\x80", ""}}) {
            insert.SetNumber(0, ++number);
            insert.SetText(1, name);
            insert.SetBlob(2, bytes);
            insert.Run();
        }
        EXPECT_EQ(FailureOf([&] { insert.SetText(1, "ḍḍḍḍ"); }), u"A text is longer than its column"_s);
    }
    TpFIBDataSet rows;
    Use(rows, u"select NAME, B from T order by N"_s);
    rows.Open();
    for (const auto &[name, bytes] : {std::pair(u"ḍḍḍ"_s, longBlob), {u""_s, "b"}, {u"\U0001F600"_s, ""}}) {
        EXPECT_EQ(rows.FieldByName(u"NAME"_s).AsString(), name);
        EXPECT_EQ(rows.FieldByName(u"B"_s).AsBytes(), bytes);
        rows.Next();
    }
    EXPECT_TRUE(rows.Eof());
}

TEST_F(StoreTest, ARepeatedStatementMayOutliveItsConnection)
{
    RunScript(database, u"create table T (N integer);"_s);
    RepeatedStatement insert(database.Attachment(), transaction.Native(), u"insert into T (N) values (?)"_s);
    insert.Run();
    database.SetConnected(false);
}

} // namespace
