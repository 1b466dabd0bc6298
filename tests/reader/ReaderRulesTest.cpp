#include "reader/ReaderRules.h"

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

TEST(TreeFilter, AValueBeyondEveryNameAsksForMoreLettersThanANameHas)
{
    // 381 bytes hold a name of 127 letters; two of them are the wildcards.
    EXPECT_EQ(TreeFilterValue(QString(379, u'%')), QString(381, u'%'));
    EXPECT_EQ(TreeFilterValue(QString(380, u'%')), QString(128, u'_'));
    EXPECT_EQ(TreeFilterValue(QString(127, QChar(0x1E6D))), QString(128, u'_'));
}

TEST(TreeRows, OfGroupsAreToldFromTextsByTheirKeys)
{
    for (const auto &[idVic, treeId, isGroup] : {std::tuple(1002, u"2"_s, true),
                                                 {1002, u"10022"_s, false},
                                                 {1101, u"11012"_s, false},
                                                 {20001000, u"200010001000"_s, false}})
        EXPECT_EQ(IsGroupRow(idVic, treeId), isGroup) << treeId.toStdString();
}

TEST(RandomOpening, CoversOneTo204AndNeverTheLastText)
{
    EXPECT_EQ(RandomSuttaNumber(0), 1);
    EXPECT_EQ(RandomSuttaNumber(0xFFFFFFFF), 204);
    int seen[206] = {};
    for (quint64 drawn = 0; drawn <= 0xFFFFFFFF; drawn += 65536)
        ++seen[RandomSuttaNumber(static_cast<quint32>(drawn))];
    EXPECT_EQ(seen[0] + seen[205], 0);
    for (int number = 1; number <= 204; ++number)
        EXPECT_NEAR(seen[number], 65536 / 204, 2) << number;
}

TEST(BoxTexts, OfTheMarksStandInTwoLanguagesAndAreEmptyElse)
{
    EXPECT_EQ(ClientDatabaseNotOpenText(0), u"Hệ thống dữ liệu chưa sẵn sàng!"_s);
    EXPECT_EQ(ClientDatabaseNotOpenText(1), u"Client database is not open!"_s);
    EXPECT_EQ(ClientDatabaseNotOpenText(2) + ClientDatabaseNotOpenText(-1), QString());
}

} // namespace
