#include "everywhere/EverywhereModel.h"

#include "everywhere/EverywhereScan.h"
#include "support/StoreSupport.h"

#include <QAbstractItemModelTester>

using namespace Qt::StringLiterals;

namespace {

/// Rows over a scan of a canon with texts "T1", "T2" …
class EverywhereRows : public StoreTest
{
protected:
    /// Pages are expressions of the database.
    void Fill(const QStringList &pages)
    {
        RunScript(database, u"create table KELORA_TREE (ID_VIT integer not null, P_ID_VIT integer, NAME_VIT_VIE "
                            "varchar(127), NAME_VIT_PAL varchar(127), NAME_VIT_ENG varchar(127));"_s);
        RunScript(database,
                  u"create table KELORA_CONTENT (ID_VIT integer not null, ID_VIC integer not null, "
                  "NAME_VIC_PAL varchar(127), NAME_VIC_ENG varchar(127), NAME_VIC_VIE varchar(127), NUMBER_VIC "
                  "integer, CONTENT_VIC_PAL blob, CONTENT_VIC_ENG blob, CONTENT_VIC_VIE blob, "
                  "CONTENT_VIC_PAL_VIE blob);"_s);
        RunScript(database, u"insert into KELORA_TREE values (1, -1, 'G', 'G', 'G');"_s);
        for (qsizetype text = 1; text <= pages.size(); ++text)
            RunScript(database,
                      u"insert into KELORA_CONTENT (ID_VIT, ID_VIC, NAME_VIC_VIE, NUMBER_VIC, CONTENT_VIC_VIE) "
                      "values (1, %1, 'T%1', %1, %2);"_s.arg(QString::number(text), pages.at(text - 1)));
    }
    void Seek(EverywhereModel &model, EverywhereScan &scan, const QString &words)
    {
        scan.AfterText = [&](int text) { model.TextCame(text); };
        model.Clear();
        scan.Begin(EverywhereQuery(words, {.names = false, .marks = false}));
        while (scan.Step()) {
        }
    }
};

} // namespace

TEST_F(EverywhereRows, AreTextsAndTheirHitsWithTheNearerTextsFirst)
{
    Fill({u"'alpha ' || rpad('z', 400, 'z') || ' beta'"_s, u"'beta alpha'"_s, u"'alpha'"_s});
    EverywhereScan scan(database, nullptr);
    EverywhereModel model(scan);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    Seek(model, scan, u"alpha beta"_s);
    ASSERT_EQ(model.rowCount(), 6);
    EXPECT_EQ(model.LineAt(0).text + model.LineAt(3).text, u"T2T1"_s);
    EXPECT_EQ(model.LineAt(1).hit + model.LineAt(2).hit + model.LineAt(4).hit + model.LineAt(5).hit,
              u"betaalphaalphabeta"_s);
    EXPECT_EQ(model.NextHit(-1, false), 1);
    EXPECT_EQ(model.NextHit(2, false), 4);
    EXPECT_EQ(model.NextHit(4, true), 2);
    EXPECT_EQ(model.NextHit(1, true), -1);
    EXPECT_FALSE(model.flags(model.index(3)).testFlag(Qt::ItemIsSelectable));
    Seek(model, scan, u"gamma"_s);
    EXPECT_EQ(model.rowCount(), 0);
}

TEST_F(EverywhereRows, AreNeverTooManyAndTheFirstOnesStay)
{
    const QString many = u"cast(rpad('x', 8000, 'x') as blob) || rpad('x', 8000, 'x') || rpad('x', 8000, 'x') || "
                         "rpad('x', 8000, 'x') || rpad('z', 400, 'z') || ' y'"_s;
    Fill({many, many, u"'x y'"_s});
    EverywhereScan scan(database, nullptr);
    EverywhereModel model(scan);
    Seek(model, scan, u"x y"_s);
    EXPECT_EQ(model.rowCount(), EverywhereModel::MostRows);
    EXPECT_TRUE(model.IsCut());
    EXPECT_EQ(model.LineAt(0).text + model.LineAt(3).text, u"T3T1"_s);
    EXPECT_EQ(model.LineAt(3).count, 32'001);
    EXPECT_EQ(model.LineAt(EverywhereModel::MostRows - 1).text, u"T2"_s);
    EXPECT_EQ(model.NextHit(EverywhereModel::MostRows - 1, false), -1);
}
