#include "lumivara-data/CanonCheck.h"

#include <gmock/gmock.h>

#include <functional>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

CheckedGroup Group(int idVit, int parent)
{
    return {idVit, parent, u"Nhóm"_s, u"Vaggo"_s, u"Group"_s};
}

CheckedText Text(int idVic, int idVit, int number)
{
    return {idVit, idVic, number, u"Bài"_s, u"Pāṭho"_s, QString(), {}};
}

CheckedPage Page(const QByteArray &bytes)
{
    return {u"CONTENT_VIC_PAL"_s, InspectPage(bytes)};
}

/// A canon without a fault, which each case spoils in one way.
CheckedCanon GoodCanon()
{
    CheckedCanon canon{{Group(1, -1), Group(2, 1), Group(3, 1)}, {Text(1101, 2, 1), Text(1201, 3, 2)}};
    canon.texts[0].pages = {Page("<meta charset=\"utf-8\">chữ")};
    return canon;
}

std::vector<std::string> Lines(const CheckedCanon &canon)
{
    std::vector<std::string> lines;
    for (const Finding &finding : CheckCanon(canon))
        lines.push_back((finding.row + u": "_s + finding.fault).toStdString());
    return lines;
}

struct Fault
{
    const char *rule;
    std::function<void(CheckedCanon &)> spoil;
    std::vector<std::string> findings;
};

class CanonFaults : public testing::TestWithParam<Fault>
{};

TEST_P(CanonFaults, AreFoundAndNothingElse)
{
    CheckedCanon canon = GoodCanon();
    GetParam().spoil(canon);
    EXPECT_EQ(Lines(canon), GetParam().findings);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, CanonFaults,
    testing::Values(
        Fault{"GroupKeyReadsLikeATextKey",
              [](CheckedCanon &c) { c.groups.append(Group(11012, 1)); },
              {"text 1101 of group 2: TREE_ID \"11012\" is the key of group 11012 too"}},
        Fault{"TextKeysReadAlike",
              [](CheckedCanon &c) {
                  c.groups.append(Group(13, 1));
                  c.texts = {Text(11011, 3, 1), Text(1101, 13, 2)};
              },
              {"text 1101 of group 13: TREE_ID \"110113\" is the key of text 11011 of group 3 too"}},
        Fault{"GroupTwice",
              [](CheckedCanon &c) { c.groups.append(Group(3, 1)); },
              {"group 3: TREE_ID \"3\" is the key of group 3 too"}},
        Fault{"GroupShowsAText",
              [](CheckedCanon &c) { c.groups.append(Group(101, 1)); },
              {"group 101: 1000 + ID_VIT is 1101, the number of a text: the group shows that text"}},
        Fault{"LargestGroupKey", [](CheckedCanon &c) { c.groups.append(Group(2147483647, 1)); }, {}},
        Fault{"GroupWithoutParent",
              [](CheckedCanon &c) { c.groups[2].parent = 9; },
              {"group 3: the parent group 9 does not exist"}},
        Fault{"TextWithoutGroup",
              [](CheckedCanon &c) { c.texts[1].idVit = 9; },
              {"text 1201 of group 9: the group 9 does not exist"}},
        Fault{"TextAtTheRoot",
              [](CheckedCanon &c) { c.texts[1].idVit = -1; },
              {"text 1201 of group -1: the group -1 does not exist"}},
        Fault{"GroupIsTheRoot",
              [](CheckedCanon &c) { c.groups.append(Group(-1, -1)); },
              {"group -1: ID_VIT is -1, the root of the tree"}},
        Fault{"OwnParent", [](CheckedCanon &c) { c.groups[2].parent = 3; }, {"group 3: is its own ancestor"}},
        Fault{"CycleOfTwoAndAGroupBelow",
              [](CheckedCanon &c) {
                  c.groups[0].parent = 2;
                  c.groups[1].parent = 1;
                  c.groups[2].parent = 2;
              },
              {"group 1: is its own ancestor", "group 2: is its own ancestor"}},
        Fault{"NumberTwice",
              [](CheckedCanon &c) { c.texts[1].idVic = 1101; },
              {"text 1101 of group 3: ID_VIC 1101 is the number of text 1101 of group 2 too"}},
        Fault{"RunningNumbersStartAtTwo",
              [](CheckedCanon &c) {
                  c.texts[0].number = 2;
                  c.texts[1].number = 3;
              },
              {"text 1101 of group 2: NUMBER_VIC is 2, and 1 is missing before it"}},
        Fault{"GapOfOne",
              [](CheckedCanon &c) { c.texts[1].number = 3; },
              {"text 1201 of group 3: NUMBER_VIC is 3, and 2 is missing before it"}},
        Fault{"GapOfMany",
              [](CheckedCanon &c) { c.texts[1].number = 9; },
              {"text 1201 of group 3: NUMBER_VIC is 9, and 2 to 8 are missing before it"}},
        Fault{"RunningNumberTwice",
              [](CheckedCanon &c) { c.texts[1].number = 1; },
              {"text 1201 of group 3: NUMBER_VIC 1 is that of text 1101 of group 2 too"}},
        Fault{"RunningNumberZero",
              [](CheckedCanon &c) { c.texts.append(Text(1301, 3, 0)); },
              {"text 1301 of group 3: NUMBER_VIC is 0, below 1"}},
        Fault{"NullKeys",
              [](CheckedCanon &c) {
                  c.groups[2] = {std::nullopt, std::nullopt, u"a"_s, u"b"_s, {}};
                  c.texts[1] = {std::nullopt, std::nullopt, std::nullopt, u"a"_s, u"b"_s, {}, {}};
              },
              {"group null: ID_VIT is null", "group null: P_ID_VIT is null", "text null of group null: ID_VIC is null",
               "text null of group null: ID_VIT is null", "text null of group null: NUMBER_VIC is null"}},
        Fault{"NullNamesButEnglishMayBe",
              [](CheckedCanon &c) {
                  c.groups[0].nameEnglish = QString();
                  c.groups[0].nameVietnamese = QString();
                  c.texts[0].namePali = QString();
              },
              {"group 1: NAME_VIT_VIE is null", "text 1101 of group 2: NAME_VIC_PAL is null"}},
        Fault{"EmptyEnglishHidesThePaliName",
              [](CheckedCanon &c) { c.texts[0].nameEnglish = u""_s; },
              {"text 1101 of group 2: NAME_VIC_ENG is empty"}},
        Fault{"NameOf127Characters", [](CheckedCanon &c) { c.texts[0].namePali = QString(127, u'ā'); }, {}},
        Fault{"NameOf128Characters",
              [](CheckedCanon &c) { c.texts[0].namePali = QString(128, u'ā'); },
              {"text 1101 of group 2: NAME_VIC_PAL has 128 characters, more than 127"}},
        Fault{"PageIsNoUtf8",
              [](CheckedCanon &c) { c.texts[0].pages = {Page("<meta charset=utf-8>\xE1\xBB")}; },
              {"text 1101 of group 2: CONTENT_VIC_PAL is not UTF-8 at byte 20"}},
        Fault{"PageWithoutCharset",
              [](CheckedCanon &c) { c.texts[0].pages = {Page("<p>charset=utf-8</p>")}; },
              {"text 1101 of group 2: CONTENT_VIC_PAL names no charset"}},
        Fault{"PageWithAnotherCharset",
              [](CheckedCanon &c) {
                  c.texts[0].pages = {
                      Page("<META HTTP-EQUIV='Content-Type' CONTENT='text/html; charset=Windows-1252'>")};
              },
              {"text 1101 of group 2: CONTENT_VIC_PAL names the charset windows-1252"}}),
    [](const auto &row) { return std::string(row.param.rule); });

TEST(CanonCheck, AGoodCanonHasNoFindings)
{
    EXPECT_THAT(Lines(GoodCanon()), IsEmpty());
    EXPECT_THAT(Lines({}), IsEmpty());
}

TEST(CanonCheck, FaultsOfSeveralKindsAreAllReported)
{
    CheckedCanon canon = GoodCanon();
    canon.groups[1].parent = 9;
    canon.texts[1].number = 4;
    EXPECT_THAT(Lines(canon), ElementsAre("group 2: the parent group 9 does not exist",
                                          "text 1201 of group 3: NUMBER_VIC is 4, and 2 to 3 are missing before it"));
}

struct Bytes
{
    const char *rule;
    QByteArray bytes;
    qsizetype firstBad;
};

class Utf8Table : public testing::TestWithParam<Bytes>
{};

TEST_P(Utf8Table, FindsTheFirstBadByte)
{
    EXPECT_EQ(FirstBadUtf8Byte(GetParam().bytes), GetParam().firstBad);
}

INSTANTIATE_TEST_SUITE_P(Rules, Utf8Table,
                         testing::Values(Bytes{"Empty", "", -1}, Bytes{"Letters", "aāữ\xF0\x9F\x98\x80", -1},
                                         Bytes{"NulIsACharacter", QByteArray("a\0b", 3), -1},
                                         Bytes{"Highest", "\xF4\x8F\xBF\xBF", -1},
                                         Bytes{"LoneContinuation", "ab\x80", 2}, Bytes{"CutSequence", "a\xE1\xBB", 1},
                                         Bytes{"CutByALetter", "a\xE1\xBBz", 1}, Bytes{"OverlongOfTwo", "\xC0\xAF", 0},
                                         Bytes{"OverlongOfThree", "\xE0\x80\xAF", 0},
                                         Bytes{"OverlongOfFour", "\xF0\x80\x80\xAF", 0},
                                         Bytes{"Surrogate", "x\xED\xA0\x80", 1},
                                         Bytes{"AboveUnicode", "\xF4\x90\x80\x80", 0}, Bytes{"NoLead", "\xFF", 0}),
                         [](const auto &row) { return std::string(row.param.rule); });

TEST(PageFactsTest, AByteOrderMarkNamesTheCharset)
{
    EXPECT_EQ(InspectPage("\xEF\xBB\xBF<p>x</p>").charset, "utf-8");
}

} // namespace
