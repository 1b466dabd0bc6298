#include "lumivara-data/CanonCheck.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

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

TEST(CanonFaults, AreFoundAndNothingElse)
{
    const std::pair<void (*)(CheckedCanon &), std::vector<std::string>> rows[]{
        {[](auto &c) { c.groups.append(Group(11012, 1)); },
         {"text 1101 of group 2: TREE_ID \"11012\" is the key of group 11012 too"}},
        {[](auto &c) {
             c.groups.append(Group(13, 1));
             c.texts = {Text(11011, 3, 1), Text(1101, 13, 2)};
         },
         {"text 1101 of group 13: TREE_ID \"110113\" is the key of text 11011 of group 3 too"}},
        {[](auto &c) { c.groups.append(Group(3, 1)); }, {"group 3: TREE_ID \"3\" is the key of group 3 too"}},
        {[](auto &c) { c.groups.append(Group(101, 1)); },
         {"group 101: 1000 + ID_VIT is 1101, the number of a text: the group shows that text"}},
        {[](auto &c) { c.groups.append(Group(2147483647, 1)); }, {}},
        {[](auto &c) { c = {}; }, {}},
        {[](auto &c) { c.groups[2].parent = 9; }, {"group 3: the parent group 9 does not exist"}},
        {[](auto &c) { c.texts[1].idVit = 9; }, {"text 1201 of group 9: the group 9 does not exist"}},
        {[](auto &c) { c.texts[1].idVit = -1; }, {"text 1201 of group -1: the group -1 does not exist"}},
        {[](auto &c) { c.groups.append(Group(-1, -1)); }, {"group -1: ID_VIT is -1, the root of the tree"}},
        {[](auto &c) { c.groups[2].parent = 3; }, {"group 3: is its own ancestor"}},
        {[](auto &c) {
             c.groups[0].parent = 2;
             c.groups[1].parent = 1;
             c.groups[2].parent = 2;
         },
         {"group 1: is its own ancestor", "group 2: is its own ancestor"}},
        {[](auto &c) { c.texts[1].idVic = 1101; },
         {"text 1101 of group 3: ID_VIC 1101 is the number of text 1101 of group 2 too"}},
        {[](auto &c) {
             c.texts[0].number = 2;
             c.texts[1].number = 3;
         },
         {"text 1101 of group 2: NUMBER_VIC is 2, and 1 is missing before it"}},
        {[](auto &c) { c.texts[1].number = 3; }, {"text 1201 of group 3: NUMBER_VIC is 3, and 2 is missing before it"}},
        {[](auto &c) { c.texts[1].number = 9; },
         {"text 1201 of group 3: NUMBER_VIC is 9, and 2 to 8 are missing before it"}},
        {[](auto &c) { c.texts[1].number = 1; },
         {"text 1201 of group 3: NUMBER_VIC 1 is that of text 1101 of group 2 too"}},
        {[](auto &c) { c.texts.append(Text(1301, 3, 0)); }, {"text 1301 of group 3: NUMBER_VIC is 0, below 1"}},
        {[](auto &c) {
             c.groups[2] = {std::nullopt, std::nullopt, u"a"_s, u"b"_s, {}};
             c.texts[1] = {std::nullopt, std::nullopt, std::nullopt, u"a"_s, u"b"_s, {}, {}};
         },
         {"group null: ID_VIT is null", "group null: P_ID_VIT is null", "text null of group null: ID_VIC is null",
          "text null of group null: ID_VIT is null", "text null of group null: NUMBER_VIC is null"}},
        {[](auto &c) {
             c.groups[0].nameEnglish = QString();
             c.groups[0].nameVietnamese = QString();
             c.texts[0].namePali = QString();
         },
         {"group 1: NAME_VIT_VIE is null", "text 1101 of group 2: NAME_VIC_PAL is null"}},
        {[](auto &c) { c.texts[0].nameEnglish = u""_s; }, {"text 1101 of group 2: NAME_VIC_ENG is empty"}},
        {[](auto &c) { c.texts[0].namePali = QString(127, u'ā'); }, {}},
        {[](auto &c) { c.texts[0].namePali = QString(128, u'ā'); },
         {"text 1101 of group 2: NAME_VIC_PAL has 128 characters, more than 127"}},
        {[](auto &c) { c.texts[0].pages = {Page("<meta charset=utf-8>\xE1\xBB")}; },
         {"text 1101 of group 2: CONTENT_VIC_PAL is not UTF-8 at byte 20"}},
        {[](auto &c) { c.texts[0].pages = {Page("<p>charset=utf-8</p>")}; },
         {"text 1101 of group 2: CONTENT_VIC_PAL names no charset"}},
        {[](auto &c) {
             c.texts[0].pages = {Page("<META HTTP-EQUIV='Content-Type' CONTENT='text/html; charset=Windows-1252'>")};
         },
         {"text 1101 of group 2: CONTENT_VIC_PAL names the charset windows-1252"}}};
    for (const auto &[spoil, findings] : rows) {
        CheckedCanon canon = GoodCanon();
        spoil(canon);
        EXPECT_EQ(Lines(canon), findings);
    }
}

TEST(CanonCheck, FindsTheFirstBadByte)
{
    for (const auto &[bytes, firstBad] : {std::pair<QByteArray, qsizetype>{"", -1},
                                          {"aāữ\xF0\x9F\x98\x80", -1},
                                          {QByteArray("a\0b", 3), -1},
                                          {"\xF4\x8F\xBF\xBF", -1},
                                          {"ab\x80", 2},
                                          {"a\xE1\xBB", 1},
                                          {"a\xE1\xBBz", 1},
                                          {"\xC0\xAF", 0},
                                          {"\xE0\x80\xAF", 0},
                                          {"\xF0\x80\x80\xAF", 0},
                                          {"x\xED\xA0\x80", 1},
                                          {"\xF4\x90\x80\x80", 0},
                                          {"\xFF", 0}})
        EXPECT_EQ(FirstBadUtf8Byte(bytes), firstBad) << bytes.toHex().constData();
}

TEST(PageFactsTest, AByteOrderMarkNamesTheCharset)
{
    EXPECT_EQ(InspectPage("\xEF\xBB\xBF<p>x</p>").charset, "utf-8");
}

} // namespace
