#include "search/SuttaSearch.h"

#include "support/StoreSupport.h"

#include <stdexcept>

using namespace Qt::StringLiterals;

TEST_F(StoreTest, ARowThatFailsIsToldAndTheOthersAreFound)
{
    RunScript(database, u"create table KELORA_CONTENT (ID_VIC integer, CONTENT_VIC_PAL blob); commit work;"
                        "insert into KELORA_CONTENT values (1, 'dhamma');"
                        "insert into KELORA_CONTENT values (2, null);"
                        "insert into KELORA_CONTENT values (3, 'DHAMMO');"_s);
    TpFIBDataSet passages;
    Use(passages, u"select * from KELORA_CONTENT order by ID_VIC"_s);
    QString told;
    const auto note = [&](const QString &what) { told += what + passages.FieldByName(u"ID_VIC"_s).AsString() + u' '; };
    SuttaSearchEvents events;
    events.onHit = [&](const QString &sample) {
        if (sample == u"dhamma"_s)
            throw std::runtime_error("not stored");
        note(sample);
    };
    events.onFailure = [&] { note(u"failure"_s); };
    events.onRow = [&] { note(u"row"_s); };
    passages.Open();
    passages.FetchAll();
    passages.First();
    EXPECT_EQ(ScanSuttas(passages, u"dhamm"_s, 0, events), 1);
    EXPECT_EQ(std::exchange(told, {}), u"failure1 row1 row2 DHAMMO3 row3 "_s);
    events.onHit = note;
    events.onRow = [&] { transaction.SetActive(false); }; // the names are here, the pages can't be had any more
    passages.First();
    EXPECT_EQ(ScanSuttas(passages, u"dhamm"_s, 0, events), 1);
    EXPECT_EQ(told, u"dhamma1 failure3 "_s);
}
