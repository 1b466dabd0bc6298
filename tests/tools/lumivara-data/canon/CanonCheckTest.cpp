#include "lumivara-data/canon/CanonCheck.h"

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

CheckedText Named(CheckedText text, const QString &pali, const QString &english, const QByteArray &page)
{
    text.namePali = pali;
    text.nameEnglish = english;
    text.pages = {{u"CONTENT_VIC_PAL"_s, InspectPage(page)}};
    return text;
}

std::string Told(const CheckedCanon &canon)
{
    std::string told;
    for (const Finding &finding : CheckCanon(canon))
        told += (finding.row + u": "_s + finding.fault + u'\n').toStdString();
    return told;
}

TEST(CanonFaults, AreFoundAndNothingElse)
{
    const QList<CheckedGroup> groups{Group(1, -1), Group(2, 1), Group(3, 1), Group(2147482647, 1)};
    const CheckedText sound = Named(Text(1101, 2, 1), QString(127, u'ā'), {}, "<meta charset=\"utf-8\">chữ"),
                      nameless{{}, {}, {}, u"a"_s, u"b"_s, {}, {}};
    EXPECT_EQ(Told({groups, {sound, Named(Text(1201, 3, 2), u"a"_s, {}, "\xEF\xBB\xBF<p>x</p>")}}), "");
    EXPECT_EQ(Told({}), "");
    EXPECT_EQ(Told({groups,
                    {Text(1101, 2, 2), Text(1101, 3, 3), Text(1301, 3, 9), Text(1401, 3, 9), Text(1501, 3, 0),
                     Text(1601, -1, 10), nameless}}),
              "text null of group null: ID_VIC is null\n"
              "text null of group null: ID_VIT is null\n"
              "text 1601 of group -1: the group -1 does not exist\n"
              "text 1101 of group 3: ID_VIC 1101 is the number of text 1101 of group 2 too\n"
              "text 1401 of group 3: NUMBER_VIC 9 is that of text 1301 of group 3 too\n"
              "text 1501 of group 3: NUMBER_VIC is 0, below 1\n"
              "text null of group null: NUMBER_VIC is null\n"
              "text 1101 of group 2: NUMBER_VIC is 2, and 1 is missing before it\n"
              "text 1301 of group 3: NUMBER_VIC is 9, and 4 to 8 are missing before it\n");
    const QList<CheckedGroup> odd{Group(11012, 1),
                                  Group(3, 1),
                                  Group(101, 1),
                                  Group(13, 1),
                                  Group(4, 9),
                                  Group(-1, -1),
                                  Group(5, 6),
                                  Group(6, 5),
                                  Group(7, 5),
                                  Group(2147482648, 1),
                                  {{}, {}, QString(), u"b"_s, {}}};
    EXPECT_EQ(Told({groups + odd, {Text(1101, 2, 1), Text(11011, 3, 2), Text(1101, 13, 3)}}),
              "group -1: ID_VIT is -1, the root of the tree\n"
              "group null: ID_VIT is null\n"
              "group null: P_ID_VIT is null\n"
              "group 3: TREE_ID \"3\" is the key of group 3 too\n"
              "text 1101 of group 2: TREE_ID \"11012\" is the key of group 11012 too\n"
              "text 1101 of group 13: TREE_ID \"110113\" is the key of text 11011 of group 3 too\n"
              "group 101: 1000 + ID_VIT is 1101, the number of a text: the group shows that text\n"
              "group 2147482648: 1000 + ID_VIT is 2147483648, more than a number can be: the tree does not open\n"
              "group 4: the parent group 9 does not exist\n"
              "group 5: is its own ancestor\n"
              "group 6: is its own ancestor\n"
              "text 1101 of group 13: ID_VIC 1101 is the number of text 1101 of group 2 too\n"
              "group null: NAME_VIT_VIE is null\n");
    EXPECT_EQ(Told({groups,
                    {Named(Text(1101, 2, 1), QString(128, u'ā'), {}, "<meta charset=utf-8>\xE1\xBB"),
                     Named(Text(1201, 3, 2), {}, {}, "<p>charset=utf-8</p>"),
                     Named(Text(1301, 3, 3), u"a"_s, u""_s,
                           "<META HTTP-EQUIV=Content-Type CONTENT='text/html; charset=Big5'>")}}),
              "text 1101 of group 2: NAME_VIC_PAL has 128 characters, more than 127\n"
              "text 1201 of group 3: NAME_VIC_PAL is null\n"
              "text 1301 of group 3: NAME_VIC_ENG is empty\n"
              "text 1101 of group 2: CONTENT_VIC_PAL is not UTF-8 at byte 20\n"
              "text 1201 of group 3: CONTENT_VIC_PAL names no charset\n"
              "text 1301 of group 3: CONTENT_VIC_PAL names the charset big5\n");
}

} // namespace
