#include "common/Report.h"
#include "common/Tool.h"
#include "lumivara-data/canon/ReadingOrder.h"
#include "lumivara-data/canon/TextKeys.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace {

using Order = QList<qsizetype>;
using Keys = QList<int>;

TEST(ReadingOrder, IsByNumbersThenByNamesThenAsTheTableTells)
{
    struct Case
    {
        const char *rule;
        Order groups; ///< parents
        QList<ReadingOrder::Text> texts;
        Order order;
        bool tells = true;
    };
    const Case cases[] = {
        {"numbers alone", {-1, -1}, {{0, 3, {u"a1"_s}}, {1, 1, {u"a2"_s}}, {0, 2, {u"a3"_s}}}, {1, 2, 0}},
        {"numbers in names", {-1}, {{0, {}, {u"1.10"_s}}, {0, {}, {u"1.2"_s}}, {0, {}, {u"1"_s}}}, {2, 1, 0}},
        {"a number in common is none", {-1}, {{0, {}, {u"v1/intro"_s}}, {0, {}, {u"v1/begin"_s}}}, {0, 1}},
        {"but numbers that begin in the same way are", {-1}, {{0, {}, {u"11"_s}}, {0, {}, {u"10"_s}}}, {1, 0}},
        {"the next kind of names", {-1}, {{0, {}, {u"b"_s, u"2"_s}}, {0, {}, {u"a"_s, u"10"_s}}}, {0, 1}},
        {"as the table tells", {-1}, {{0, {}, {u"b"_s}}, {0, {}, {u"a1"_s}}}, {0, 1}},
        {"where nothing tells by name", {-1}, {{0, {}, {u"b"_s}}, {0, {}, {u"a1"_s}}}, {1, 0}, false},
        {"the numbered first", {-1}, {{0, {}, {u"1"_s}}, {0, 7, {u"2"_s}}}, {1, 0}},
        {"groups before texts, in depth",
         {-1, 0, 0, -1},
         {{3, {}, {u"5"_s}}, {0, {}, {u"4"_s}}, {2, {}, {u"1"_s}}, {1, {}, {u"9"_s}}, {-1, {}, {u"0"_s}}},
         {3, 2, 1, 0, 4}},
        {"a cycle is broken", {1, 0, -1}, {{1, {}, {u"1"_s}}, {0, {}, {u"2"_s}}, {2, {}, {u"3"_s}}}, {2, 0, 1}},
    };
    for (const Case &one : cases)
        EXPECT_EQ(ReadingOrder::Of(one.groups, one.texts, one.tells), one.order) << one.rule;
}

TEST(KeyPlan, NewKeysAscendBetweenThoseThatStay)
{
    constexpr auto no = std::nullopt;
    struct Case
    {
        const char *rule;
        QList<std::optional<int>> kept;
        Keys reserved, keys;
        Order astray = {};
    };
    const Case cases[] = {
        {"steps", {no, no, no}, {}, {10'001'000, 10'002'000, 10'003'000}},
        {"behind the last", {10'001'500, no}, {}, {10'001'500, 10'002'000}},
        {"in the middle of a gap", {10'001'000, no, 10'002'000}, {}, {10'001'000, 10'001'500, 10'002'000}},
        {"before the first", {no, 10'001'000}, {}, {10'000'500, 10'001'000}},
        {"all that there is",
         {10'001'000, no, no, 10'001'004},
         {10'001'002},
         {10'001'000, 10'001'001, 10'001'003, 10'001'004}},
        {"steps beside reserved ones", {no, no}, {10'002'000}, {10'001'001, 10'002'001}},
        {"kept out of order",
         {10'003'000, 10'001'000, no, 10'002'000},
         {},
         {10'003'000, 10'001'000, 10'001'500, 10'002'000},
         {0}},
        {"given ones below", {no, 1500, no}, {}, {10'001'000, 1500, 10'002'000}},
        {"the last one", {99'999'998, no}, {}, {99'999'998, 99'999'999}},
    };
    for (const Case &one : cases) {
        KeyPlan plan;
        for (const int key : one.reserved)
            plan.Reserve(key);
        const KeyPlan::Keys found = plan.For(one.kept);
        EXPECT_EQ(found.keys, one.keys) << one.rule;
        EXPECT_EQ(found.astray, one.astray) << one.rule;
    }
    const auto many = KeyPlan().For(QList<std::optional<int>>(200'000)).keys;
    EXPECT_TRUE(std::adjacent_find(many.begin(), many.end(), std::greater_equal()) == many.end() &&
                many.last() <= KeyPlan::Last)
        << "closer than the steps where they lead too far";
}

TEST(KeyPlan, AFullGapIsToldWithTheWayOut)
{
    KeyPlan plan;
    plan.Reserve(10'000'002);
    try {
        plan.For({10'000'001, std::nullopt, 10'000'003});
        FAIL() << "no key is left";
    } catch (const ToolError &error) {
        EXPECT_THAT(error.what(),
                    HasSubstr("no key is free between 10000001 and 10000003 for 1 new texts; --renumber"));
    }
}

/// A text of the canon before.
TextTraits Old(int key, const QString &source, const QString &name = {}, bool isThere = true)
{
    return {key, source, {name, name, {}}, isThere};
}

TEST(TextKeys, TextsKeepTheirKeysBySourceByFormerKeyAndByName)
{
    // The second was made by a version that took keys from sources and remembered none.
    const QList<TextTraits> before{Old(10'001'000, u"a"_s, u"A"_s),    Old(10'757'363, {}, u"other"_s),
                                   Old(10'003'000, u"c"_s, u"C"_s),    Old(10'004'000, u"x"_s, u"same"_s),
                                   Old(10'005'000, u"y"_s, u"same"_s), Old(1101, {}, u"F"_s),
                                   Old(10'006'000, u"g"_s, {}, false)};
    TextKeys keys([&] { return before; });
    const Keys given =
        keys.For({{u"a"_s, {}}, {u"new c"_s, {}}, {u"new x"_s, {}}, {u"f"_s, {}}, {u"g"_s, {}}, {u"d"_s, {}}});
    EXPECT_EQ(given, (Keys{10'001'000, 10'002'249, 10'003'499, 10'004'749, 10'006'000, 10'757'363}))
        << "a text that comes back has its own";
    QList<TextTraits> now;
    const QString names[]{u"A"_s, u"C"_s, u"same"_s, u"F"_s, u"G"_s, u"D"_s};
    for (qsizetype at = 0; at < given.size(); ++at)
        now.append({given[at], {}, {names[at], names[at], {}}});
    EXPECT_EQ(keys.Recognise(now), (QHash<qsizetype, int>{{1, 10'003'000}})) << "a name that two have tells nothing";
    EXPECT_EQ(keys.Moved(), (QHash<int, int>{{1101, 10'004'749}})) << "keys of another collection stay there";
    QList<int> gone;
    for (const TextTraits &text : keys.Gone())
        gone.append(text.key);
    EXPECT_EQ(gone, (Keys{10'004'000, 10'005'000}));
}

TEST(TextKeys, ARenumberingSharesNoKeyWithTheCanonBefore)
{
    const QList<TextTraits> before{Old(10'002'000, u"a"_s), Old(10'001'000, u"b"_s), Old(10'001'001, u"gone"_s)};
    TextKeys keys([&] { return before; }, true);
    EXPECT_EQ(keys.For({{u"a"_s, {}}, {u"b"_s, {}}}), (Keys{10'001'002, 10'002'002}));
    EXPECT_EQ(keys.Moved(), (QHash<int, int>{{10'002'000, 10'001'002}, {10'001'000, 10'002'002}}));
}

TEST(TextKeys, GroupsRuleOutWhatTheyWouldShow)
{
    TextKeys keys([] { return QList<TextTraits>(); });
    keys.ReserveForGroup(10'000'000);  // the tree's number of the group is 10,001,000
    keys.ReserveForGroup(100'010'011); // so is the key of text 10,001,001 of group 1
    EXPECT_EQ(keys.For({{u"a"_s, {}}}), Keys{10'001'002});
}

} // namespace
