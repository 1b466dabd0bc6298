#include "reader/ReaderRules.h"

#include <gmock/gmock.h>

namespace {

TEST(FilterKeys, EveryKeyReloadsButFour)
{
    EXPECT_EQ(MeaningOfFilterKey(Qt::Key_Return), FilterKey::Nothing);
    EXPECT_EQ(MeaningOfFilterKey(Qt::Key_Enter), FilterKey::Nothing);
    EXPECT_EQ(MeaningOfFilterKey(Qt::Key_Down), FilterKey::NextRow);
    EXPECT_EQ(MeaningOfFilterKey(Qt::Key_Up), FilterKey::PriorRow);
    for (const int key : {int(Qt::Key_A), int(Qt::Key_Shift), int(Qt::Key_Left), int(Qt::Key_Home), int(Qt::Key_End),
                          int(Qt::Key_Escape), int(Qt::Key_Backspace), int(Qt::Key_unknown), 0})
        EXPECT_EQ(MeaningOfFilterKey(key), FilterKey::Reload) << key;
}

TEST(TreeFilter, TrimsControlsAndBlanksOnly)
{
    EXPECT_EQ(TrimControls(QStringLiteral(" \t\r\n\u0001a  b\u001F ")), QStringLiteral("a  b"));
    EXPECT_EQ(TrimControls(QStringLiteral("\u00A0a\u3000")), QStringLiteral("\u00A0a\u3000"));
    EXPECT_EQ(TrimControls(QStringLiteral(" \n ")), QString());
}

TEST(TreeFilter, ClauseFollowsTheColumnOnShow)
{
    EXPECT_EQ(TreeFilterClause(NameColumn::Pali), QStringLiteral(" where (lower(n.name_vic_pal) like :SEARCH_TEXT)"));
    EXPECT_EQ(TreeFilterClause(NameColumn::Vietnamese),
              QStringLiteral(" where (lower(n.name_vic_vie) like :SEARCH_TEXT)"));
    EXPECT_EQ(TreeFilterClause(NameColumn::English),
              QStringLiteral(" where (lower(n.name_vic_eng) like :SEARCH_TEXT)"));
    EXPECT_EQ(TreeFilterClause(NameColumn::None), QString());
}

TEST(TreeFilter, ValueIsLowerCaseBeyondAsciiAndKeepsWildcards)
{
    EXPECT_EQ(TreeFilterValue(QStringLiteral("ĐẠI PHẨM")), QStringLiteral("%đại phẩm%"));
    EXPECT_EQ(TreeFilterValue(QStringLiteral("ṬĀṄ")), QStringLiteral("%ṭāṅ%"));
    EXPECT_EQ(TreeFilterValue(QStringLiteral("A_%'\"")), QStringLiteral("%a_%'\"%"));
    // Combining marks are neither joined nor dropped.
    EXPECT_EQ(TreeFilterValue(QStringLiteral("A\u0304")), QStringLiteral("%a\u0304%"));
}

TEST(TreeFilter, AValueBeyondEveryNameAsksForMoreLettersThanANameHas)
{
    // 381 bytes hold a name of 127 letters; two of them are the wildcards.
    EXPECT_EQ(TreeFilterValue(QString(379, QLatin1Char('%'))), QString(381, QLatin1Char('%')));
    EXPECT_EQ(TreeFilterValue(QString(380, QLatin1Char('%'))), QString(128, QLatin1Char('_')));
    EXPECT_EQ(TreeFilterValue(QString(127, QChar(0x1E6D))), QString(128, QLatin1Char('_')));
}

struct NameViewCase
{
    int mode;
    NameColumn column;
    bool marginEnabled;
};

TEST(NameView, FollowsTheMode)
{
    const NameViewCase cases[] = {{0, NameColumn::Pali, true},
                                  {1, NameColumn::Vietnamese, true},
                                  {2, NameColumn::None, true},
                                  {10, NameColumn::Vietnamese, false},
                                  {7, NameColumn::None, true}};
    for (const NameViewCase &row : cases) {
        const NameView view = NameViewOfMode(row.mode);
        EXPECT_EQ(view.column, row.column) << row.mode;
        EXPECT_EQ(view.toggle, row.column) << row.mode;
        EXPECT_EQ(view.marginEnabled, row.marginEnabled) << row.mode;
    }
}

TEST(RandomOpening, CoversOneTo204AndNeverTheLastText)
{
    EXPECT_EQ(RandomSuttaNumber(0), 1);
    EXPECT_EQ(RandomSuttaNumber(0xFFFFFFFF), 204);
    int seen[206] = {};
    for (quint64 drawn = 0; drawn <= 0xFFFFFFFF; drawn += 65536)
        ++seen[RandomSuttaNumber(static_cast<quint32>(drawn))];
    EXPECT_EQ(seen[0], 0);
    EXPECT_EQ(seen[205], 0);
    for (int number = 1; number <= 204; ++number)
        EXPECT_NEAR(seen[number], 65536 / 204, 2) << number;
}

TEST(BoxTexts, OfTheMarksStandInTwoLanguagesAndAreEmptyElse)
{
    EXPECT_EQ(ClientDatabaseNotOpenText(0), QStringLiteral("Hệ thống dữ liệu chưa sẵn sàng!"));
    EXPECT_EQ(ClientDatabaseNotOpenText(1), QStringLiteral("Client database is not open!"));
    EXPECT_EQ(ClientDatabaseNotOpenText(2) + ClientDatabaseNotOpenText(-1), QString());
}

} // namespace
