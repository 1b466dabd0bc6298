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
    const QStringList rows{u"row1"_qs, u"row2"_qs, u"row3"_qs};
    EXPECT_EQ(Scan(u"dhamm"_qs, 0), 2);
    EXPECT_EQ(told, (QStringList{u"dhamma1"_qs, u"row1"_qs, u"row2"_qs, u"DHAMMO3"_qs, u"row3"_qs}));
    EXPECT_EQ(Scan(u"LU"_qs, 1), 1);
    EXPECT_EQ(told, (QStringList{u"row1"_qs, u"row2"_qs, u"luật3"_qs, u"row3"_qs}));
    EXPECT_EQ(Scan(u"o lu"_qs, 10), 1);
    EXPECT_EQ(told, (QStringList{u"row1"_qs, u"row2"_qs, u"o luật3"_qs, u"row3"_qs}));
    for (int language : {2, -1, 11}) {
        EXPECT_EQ(Scan(u"a"_qs, language), 0);
        EXPECT_EQ(told, rows) << language;
    }
}

TEST_F(SuttaSearchTest, ARowThatFailsIsToldAndTheOthersAreFound)
{
    events.onHit = [this](const QString &sample) {
        if (sample == u"dhamma"_qs)
            throw std::runtime_error("not stored");
        Note(sample);
    };
    EXPECT_EQ(Scan(u"dhamm"_qs, 0), 1);
    EXPECT_EQ(told, (QStringList{u"failure1"_qs, u"row1"_qs, u"row2"_qs, u"DHAMMO3"_qs, u"row3"_qs}));
}

TEST_F(SuttaSearchTest, APageThatCannotBeReadIsAFailureOfItsRow)
{
    passages.Open();
    passages.FetchAll();
    events.onRow = [this] {
        Note(u"row"_s);
        transaction.SetActive(false); // the names are here, the pages can't be had any more
    };
    EXPECT_EQ(Scan(u"dhamm"_qs, 0), 1);
    EXPECT_EQ(told, (QStringList{u"dhamma1"_qs, u"row1"_qs, u"row2"_qs, u"failure3"_qs, u"row3"_qs}));
}

TEST_F(SuttaSearchTest, WhatTheBarThrowsEndsTheScan)
{
    events.onRow = [] { throw std::runtime_error("no bar"); };
    EXPECT_THROW(Scan(u"dhamm"_qs, 0), std::runtime_error);
    EXPECT_EQ(told, QStringList{u"dhamma1"_qs});
}

} // namespace
