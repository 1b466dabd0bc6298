#include "everywhere/EverywhereScan.h"

#include "stores/Schema.h"
#include "support/StoreSupport.h"

#include <QStringList>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// Canon and marks in one file.
class EverywhereScanTest : public StoreTest
{
protected:
    void SetUp() override
    {
        StoreTest::SetUp();
        database.SetDefaultTransaction(&transaction);
        const QString name = u" varchar(127) character set UNICODE_FSS"_s;
        RunScript(database,
                  (u"create table KELORA_TREE (ID_VIT integer, P_ID_VIT integer, NAME_VIT_VIE%1, NAME_VIT_PAL%1, "
                   "NAME_VIT_ENG%1);"
                   "create table KELORA_CONTENT (ID_VIT integer, ID_VIC integer, NAME_VIC_PAL%1, NAME_VIC_ENG%1, "
                   "NAME_VIC_VIE%1, NUMBER_VIC integer, CONTENT_VIC_PAL blob, CONTENT_VIC_ENG blob, "
                   "CONTENT_VIC_VIE blob, CONTENT_VIC_PAL_VIE blob);"
                   "create table SUTTA_LIST (NIK_SUT integer, NIC_SUT integer, NAME_SUT_VIE%1, NAME_SUT_PAL%1, "
                   "NAME_SUT_ENG%1);"
                   "create table SUTTA_TEXT_FOCUS (ID_FOC integer, NAME_FOC%1, TEXT_FOC blob, DESC_FOC varchar(2047) "
                   "character set UNICODE_FSS, NIK_SUT integer, NIC_SUT integer, KEYWORD_FOC%1);"_s)
                      .arg(name));
        RunScript(database, u"insert into KELORA_TREE values (1, -1, 'Nhóm', 'Vagga', 'Group');"
                            "insert into KELORA_TREE values (2, 1, 'Nhóm nhỏ', null, null);"_s);
    }
    void AddText(int idVic, int idVit, const QString &pali, const QString &vietnamese, const QString &english = {},
                 const QString &parallel = {}, const QString &name = {})
    {
        TpFIBDataSet rows;
        Use(rows, u"select * from KELORA_CONTENT"_s);
        rows.InsertSQL() = {u"insert into KELORA_CONTENT (ID_VIT, ID_VIC, NAME_VIC_PAL, CONTENT_VIC_PAL, "
                            "CONTENT_VIC_VIE, CONTENT_VIC_ENG, CONTENT_VIC_PAL_VIE) values (:ID_VIT, :ID_VIC, "
                            ":NAME_VIC_PAL, :CONTENT_VIC_PAL, :CONTENT_VIC_VIE, :CONTENT_VIC_ENG, "
                            ":CONTENT_VIC_PAL_VIE)"_s};
        rows.Open();
        rows.Append();
        rows.FieldByName(Field::IdVic).SetAsInteger(idVic);
        rows.FieldByName(Field::IdVit).SetAsInteger(idVit);
        rows.FieldByName(Field::NameVicPal).SetAsString(name);
        const std::pair<QString, QString> pages[]{{Field::ContentVicPal, pali},
                                                  {Field::ContentVicVie, vietnamese},
                                                  {Field::ContentVicEng, english},
                                                  {Field::ContentVicPalVie, parallel}};
        for (const auto &[field, page] : pages)
            rows.FieldByName(field).SetAsBytes(page.toUtf8());
        rows.Post();
        transaction.CommitRetaining();
    }
    void AddMark(int idFoc, int collection, int idVic, const QString &title, const QString &keywords,
                 const QString &note, const QString &excerpt)
    {
        RunScript(database, u"insert into SUTTA_TEXT_FOCUS values (%1, '%4', '%7', '%6', %2, %3, '%5');"_s.arg(
                                QString::number(idFoc), QString::number(collection), QString::number(idVic), title,
                                keywords, note, excerpt));
    }
    EverywhereScan &Scan()
    {
        if (!m_scan)
            m_scan.emplace(database, &database);
        return *m_scan;
    }
    /// Searches to the end, in the smallest pieces, and gives each text with the places of its hits.
    QString Find(const QString &typed, const EverywhereSwitches &switches = {})
    {
        Scan().Begin(EverywhereQuery(typed, switches));
        while (Scan().Step(std::chrono::milliseconds(0))) {
        }
        return Result();
    }
    QString Result()
    {
        QStringList texts;
        for (int text = 0; text < Scan().TextCount(); ++text) {
            QString places = QString::number(Scan().Text(text).idVic) + u':';
            for (int hit = 0; hit < Scan().Text(text).hitCount; ++hit)
                places += PlaceOf(Scan().Hit(text, hit));
            texts += places;
        }
        return texts.join(u' ');
    }
    static QString PlaceOf(const EverywhereHit &hit)
    {
        switch (hit.kind) {
        case EverywhereKind::Name:
            return u"N"_s;
        case EverywhereKind::Mark:
            return u"M%1%2"_s.arg(hit.idFoc).arg(u"-tkne"_s[static_cast<int>(hit.field)]);
        default:
            return hit.language == PageMode::Parallel ? u"="_s : QString(u"pve"_s[hit.language]);
        }
    }

    std::optional<EverywhereScan> m_scan;
};

constexpr EverywhereSwitches Nowhere{
    .pali = false, .vietnamese = false, .english = false, .names = false, .marks = false};

TEST_F(EverywhereScanTest, FindsInThePagesAndNamesThatAreSwitchedOn)
{
    AddText(1101, 1, u"kathinaṃ"_s, u"y <b>Kathi</b>na"_s, u"kathina, kathina"_s, u"kathina kathina"_s,
            u"Kathinakkhandhaka"_s);
    EXPECT_EQ(Find(u"kathina"_s), u"1101:Npvee"_s);
    const std::pair<bool EverywhereSwitches::*, QString> rows[]{{&EverywhereSwitches::pali, u"1101:p"_s},
                                                                {&EverywhereSwitches::vietnamese, u"1101:v"_s},
                                                                {&EverywhereSwitches::english, u"1101:ee"_s},
                                                                {&EverywhereSwitches::names, u"1101:N"_s},
                                                                {&EverywhereSwitches::marks, u""_s}};
    for (const auto &[place, result] : rows) {
        EverywhereSwitches switches = Nowhere;
        switches.*place = true;
        EXPECT_EQ(Find(u"kathina"_s, switches), result);
    }
    EXPECT_EQ(Find(u"kathina"_s, Nowhere), u""_s);
    EXPECT_EQ(Find(u"kathina"_s, {.wholeWords = true}), u"1101:vee"_s);

    Find(u"kathina"_s);
    const EverywhereText &text = Scan().Text(0);
    EXPECT_EQ(text.names.pali, u"Kathinakkhandhaka"_s);
    EXPECT_EQ(text.group.vietnamese, u"Nhóm"_s);
    EXPECT_EQ(text.idVit, 1);
    EXPECT_EQ(Scan().HitCount(), 5);
    const EverywhereHit last = Scan().Hit(0, 4);
    EXPECT_EQ(last.before + last.hit + last.after, u"kathina, kathina"_s);
    EXPECT_EQ(last.number, 1);
    EXPECT_EQ(last.count, 2);
}

TEST_F(EverywhereScanTest, TakesAParallelPageOnlyForWantOfItsOwnPages)
{
    AddText(1101, 1, {}, {}, u"kathina"_s, u"kathina"_s);
    AddText(1102, 1, u"dhamma"_s, {}, {}, u"kathina"_s);
    AddText(1103, 1, {}, u"pháp"_s, {}, u"kathina"_s);
    EverywhereSwitches pali = Nowhere;
    pali.pali = true;
    EverywhereSwitches english = Nowhere;
    english.english = true;
    for (int turn = 0; turn < 2; ++turn) { // read, and kept
        EXPECT_EQ(Find(u"kathina"_s), u"1101:e="_s);
        EXPECT_EQ(Find(u"kathina"_s, pali), u"1101:="_s);
        EXPECT_EQ(Find(u"kathina"_s, english), u"1101:e"_s);
    }
}

TEST_F(EverywhereScanTest, ListsInReadingOrderWhatStandsNearFirst)
{
    const QString far(NearLetters, u'x');
    AddText(1300, 1, u"one "_s + far + u" two"_s, {});
    AddText(1200, 1, u"two"_s, u"one"_s); // in two pages of one text
    AddText(1250, 1, u"one two"_s, {});
    AddText(9000, 2, u"two "_s + far + u" one two"_s, {});
    AddText(1100, 1, u"one"_s, {});
    EXPECT_EQ(Find(u"one"_s), u"9000:p 1100:p 1200:v 1250:p 1300:p"_s);
    EXPECT_EQ(Find(u"one two"_s), u"9000:ppp 1250:pp 1200:pv 1300:pp"_s);
    EXPECT_EQ(Scan().Text(0).nearest, 1);
    EXPECT_TRUE(Scan().Hit(0, 1).isNear);
    EXPECT_FALSE(Scan().Hit(0, 0).isNear);
    EXPECT_FALSE(Scan().Text(2).isNear);
    EXPECT_EQ(Find(u"one three"_s), u""_s);
}

TEST_F(EverywhereScanTest, FindsInEveryFieldOfAMark)
{
    AddText(1101, 1, u"dhamma"_s, {});
    AddText(1102, 2, u"dhamma"_s, {});
    RunScript(database, u"insert into SUTTA_LIST values (6, 1101, 'Bài một', null, null);"
                        "insert into SUTTA_LIST values (6, 1102, 'Bài hai', null, null);"
                        "insert into SUTTA_LIST values (5, 1101, 'Tiểu bộ', null, null);"_s);
    AddMark(1, 5, 1101, u"Dhamma"_s, {}, {}, {});
    AddMark(4, 6, 1101, u"dhamma"_s, u"dhamma"_s, u"dhamma, <b>"_s, u"<p title=dhamma>dham<b>ma</b></p>"_s);
    AddMark(3, 6, 1101, {}, {}, u"dhammo"_s, {});
    AddMark(2, 6, 1102, {}, {}, u"dhamma"_s, u"vinaya"_s);
    AddMark(5, 6, 1103, u"dhamma"_s, {}, {}, {}); // of no text that is listed
    EverywhereSwitches marks = Nowhere;
    marks.marks = true;
    EXPECT_EQ(Find(u"dhamma"_s, marks), u"1102:M2n 1101:M4tM4kM4nM4e 1101:M1t"_s);
    EXPECT_EQ(Find(u"dhamma vinaya"_s), u"1102:M2nM2e"_s); // both in one mark
    EXPECT_EQ(Find(u"dhammo vinaya"_s), u""_s);
    EXPECT_EQ(Find(u"dhamma"_s), u"1102:p 1101:p 1102:M2n 1101:M4tM4kM4nM4e 1101:M1t"_s);
    EXPECT_TRUE(Scan().Text(3).isMarks);
    EXPECT_EQ(Scan().Text(3).names.vietnamese, u"Bài một"_s);
    EXPECT_EQ(Scan().Text(3).group.pali, u"Vagga"_s);
    EXPECT_EQ(Scan().Text(4).collection, Collection::Khuddaka);
    EXPECT_EQ(Scan().Text(4).group.pali, QString());
    EXPECT_EQ(Scan().Hit(3, 2).after, u", <b>"_s); // a note has no markup

    AddMark(6, 6, 1101, u"dhamma"_s, {}, {}, {}); // marks are read anew each time
    EXPECT_EQ(Find(u"dhamma"_s, marks), u"1102:M2n 1101:M4tM4kM4nM4eM6t 1101:M1t"_s);

    EverywhereScan withoutMarks(database, nullptr);
    withoutMarks.Begin(EverywhereQuery(u"dhamma"_s, {}));
    while (withoutMarks.Step()) {
    }
    EXPECT_EQ(withoutMarks.TextCount(), 2);
}

TEST_F(EverywhereScanTest, GoesOnInPiecesAndStartsAnew)
{
    for (int text = 0; text < 20; ++text)
        AddText(1101 + text, 1, u"<p>kathina %1</p>"_s.arg(text), u"y"_s);
    QStringList told;
    Scan().BeforeText = [&](int text) {
        EXPECT_EQ(Scan().TextCount(), text);
        told += u"before"_s;
    };
    Scan().AfterText = [&](int text) {
        EXPECT_EQ(Scan().Text(text).idVic, 1101 + text);
        told += u"after"_s;
    };
    Scan().Begin(EverywhereQuery(u"kathina"_s, {}));
    EXPECT_TRUE(Scan().IsRunning());
    while (Scan().TextCount() < 3)
        ASSERT_TRUE(Scan().Step(std::chrono::milliseconds(0)));
    EXPECT_EQ(told.join(u' '), u"before after before after before after"_s);
    EXPECT_LT(Scan().TextsDone(), Scan().TextsInAll());
    Scan().Stop();
    EXPECT_FALSE(Scan().IsRunning());
    EXPECT_FALSE(Scan().Step());
    EXPECT_EQ(Scan().Hit(2, 0).after, u" 2"_s); // the result stays

    Scan().Begin(EverywhereQuery(u"y"_s, {}));
    EXPECT_EQ(Scan().TextCount(), 0);
    Scan().Begin({});
    EXPECT_FALSE(Scan().IsRunning());
    Scan().BeforeText = Scan().AfterText = nullptr;
    EXPECT_EQ(Find(u"\"kathina 19\""_s), u"1120:p"_s);
    EXPECT_EQ(Scan().TextsDone(), 20);
    EXPECT_EQ(Scan().TextsInAll(), 20);
}

TEST_F(EverywhereScanTest, KeepsPagesUntilTheyAreForgotten)
{
    AddText(1101, 1, u"kathina"_s, u"một"_s);
    EXPECT_EQ(Find(u"kathina"_s), u"1101:p"_s);
    const qint64 kept = Scan().KeptBytes();
    EXPECT_GT(kept, 0);
    RunScript(database, u"update KELORA_CONTENT set CONTENT_VIC_PAL = 'dhamma';"_s);
    AddText(1102, 1, u"kathina"_s, {});
    EXPECT_EQ(Find(u"một"_s), u"1101:v"_s);
    EXPECT_EQ(Scan().KeptBytes(), kept); // nothing was read
    Scan().ForgetPages();
    EXPECT_EQ(Scan().KeptBytes(), 0);
    EXPECT_EQ(Scan().TextCount(), 0);
    EXPECT_FALSE(Scan().IsRunning());
    EXPECT_EQ(Find(u"kathina"_s), u"1102:p"_s);
}

TEST_F(EverywhereScanTest, KeepsNoMorePagesThanFit)
{
    for (int text = 0; text < 4; ++text)
        AddText(1101 + text, 1, u"một hai ba bốn "_s.repeated(200) + u"kathina%1"_s.arg(text), {});
    constexpr qint64 most = 10'000; // two such pages and some
    m_scan.emplace(database, &database, most);
    EXPECT_EQ(Find(u"kathina3"_s), u"1104:p"_s);
    EXPECT_GT(Scan().KeptBytes(), most / 2);
    EXPECT_LE(Scan().KeptBytes(), most);
    EXPECT_EQ(Find(u"kathina"_s), u"1101:p 1102:p 1103:p 1104:p"_s); // kept or not
    EXPECT_EQ(Scan().Hit(3, 0).after, u"3"_s);
}

TEST_F(EverywhereScanTest, GoesOnOverPagesThatCannotBeRead)
{
    AddText(1101, 1, u"kathina"_s, {});
    AddText(1102, 1, u"kathina"_s, {}, {}, {}, u"kathina"_s);
    EXPECT_EQ(Find(u"names first"_s), u""_s);
    Scan().ForgetPages();
    Scan().Begin(EverywhereQuery(u"kathina"_s, {}));
    while (Scan().TextsInAll() < 2)
        ASSERT_TRUE(Scan().Step(std::chrono::milliseconds(0)));
    while (Scan().TextsDone() < 1)
        ASSERT_TRUE(Scan().Step(std::chrono::milliseconds(0)));
    EverywhereSwitches withoutMarks;
    withoutMarks.marks = false;
    Scan().Begin(EverywhereQuery(u"kathina"_s, withoutMarks));
    transaction.SetActive(false); // the list is here, the second page can't be had any more
    while (Scan().Step(std::chrono::milliseconds(0))) {
    }
    EXPECT_GT(Scan().Failures(), 0);
    EXPECT_EQ(Scan().TextCount(), 2);
    EXPECT_EQ(Scan().Text(1).hitCount, 1); // its name
    Scan().ForgetPages();
    Scan().Begin(EverywhereQuery(u"kathina"_s, {}));
    EXPECT_THROW(
        {
            while (Scan().Step()) {
            }
        },
        DatabaseError);
    EXPECT_FALSE(Scan().IsRunning());
}

} // namespace
