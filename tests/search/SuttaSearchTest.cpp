#include "search/SuttaSearch.h"

#include "support/StoreSupport.h"

#include <QStringList>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

class SuttaSearchTest : public StoreTest
{
protected:
    void SetUp() override
    {
        StoreTest::SetUp();
        RunScript(database, u"create table KELORA_CONTENT (ID_VIC integer, CONTENT_VIC_PAL blob, "
                            "CONTENT_VIC_VIE blob, CONTENT_VIC_PAL_VIE blob);"
                            "commit work;"
                            "insert into KELORA_CONTENT values (1, 'dhamma', 'pháp', 'dhamma pháp');"
                            "insert into KELORA_CONTENT values (2, null, '', null);"
                            "insert into KELORA_CONTENT values (3, 'DHAMMO', 'luật', 'Dhammo luật');"_s);
        Use(passages, u"select * from KELORA_CONTENT order by ID_VIC"_s);
        events.onHit = [this](const QString &sample) { Note(sample); };
        events.onFailure = [this] { Note(u"failure"_s); };
        events.onRow = [this] { Note(u"row"_s); };
    }
    void Note(const QString &what) { told += what + QString::number(passages.FieldByName(u"ID_VIC"_s).AsInteger()); }
    int Scan(const QString &word, int language)
    {
        told.clear();
        passages.Open();
        passages.First();
        return ScanSuttas(passages, word, language, events);
    }

    TpFIBDataSet passages;
    SuttaSearchEvents events;
    QStringList told;
};

TEST_F(SuttaSearchTest, VisitsEveryRowInTheLanguageOfTheReader)
{
    for (const auto &[word, language, expected] : {std::tuple(u"dhamm"_s, 0, u"dhamma1 row1 row2 DHAMMO3 row3"_s),
                                                   {u"LU"_s, 1, u"row1 row2 luật3 row3"_s},
                                                   {u"o lu"_s, 10, u"row1 row2 o luật3 row3"_s},
                                                   {u"a"_s, 2, u"row1 row2 row3"_s}}) {
        const int hits = Scan(word, language);
        EXPECT_EQ(hits, told.size() - 3);
        EXPECT_EQ(told.join(u' '), expected);
    }
}

TEST_F(SuttaSearchTest, ARowThatFailsIsToldAndTheOthersAreFound)
{
    events.onHit = [this](const QString &sample) {
        if (sample == u"dhamma"_s)
            throw std::runtime_error("not stored");
        Note(sample);
    };
    EXPECT_EQ(Scan(u"dhamm"_s, 0), 1);
    EXPECT_EQ(told.join(u' '), u"failure1 row1 row2 DHAMMO3 row3"_s);
    passages.FetchAll();
    events.onHit = [this](const QString &sample) { Note(sample); };
    events.onRow = [this] {
        Note(u"row"_s);
        transaction.SetActive(false); // the names are here, the pages can't be had any more
    };
    EXPECT_EQ(Scan(u"dhamm"_s, 0), 1);
    EXPECT_EQ(told.join(u' '), u"dhamma1 row1 row2 failure3 row3"_s);
}

TEST_F(SuttaSearchTest, WhatTheBarThrowsEndsTheScan)
{
    events.onRow = [] { throw std::runtime_error("no bar"); };
    EXPECT_THROW(Scan(u"dhamm"_s, 0), std::runtime_error);
    EXPECT_EQ(told, QStringList{u"dhamma1"_s});
}

} // namespace
