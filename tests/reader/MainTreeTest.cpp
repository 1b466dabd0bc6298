#include "reader/ReaderWindow.h"

#include "toolkit/BrowserControl.h"
#include "toolkit/CxButton.h"
#include "toolkit/CxTextEdit.h"
#include "toolkit/DBTreeList.h"

#include <QAbstractItemModelTester>
#include <QInputMethodEvent>

using namespace Qt::StringLiterals;

namespace {

using Names = QStringList;

class TreeFilter : public ReaderWindow
{
protected:
    void SetUp() override
    {
        StoreDefaults(1, 1101);
        Start();
    }
    TcxTextEdit &Box() { return Find<TcxTextEdit>("edFilterSutta"); }
    void SetFilter(const QString &text)
    {
        Box().setText(text);
        QTest::keyRelease(&Box(), Qt::Key_Shift);
    }
    int GroupCount() { return window->qryTreeSutas.RecordCount() - static_cast<int>(PassageNames().size()); }
    const Names all = Names{u"Giới thứ nhất"_s, u"Giới thứ nhì"_s, u"Chương lớn"_s, u"Chương lễ 100%"_s};
};

} // namespace

TEST_F(TreeFilter, TypingKeepsTheGroupsAndThePassagesThatHoldTheText)
{
    const QAbstractItemModelTester tester(Tree().model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(PassageNames(), all);
    Type(Box(), u"CHƯƠNG"_s);
    EXPECT_EQ(PassageNames(), (Names{u"Chương lớn"_s, u"Chương lễ 100%"_s}));
    EXPECT_EQ(GroupCount(), 3);
    EXPECT_EQ(CurrentName(), u"Phân tích giới"_s);
    EXPECT_THAT(Browser().Source().toStdString(), testing::HasSubstr("Phân tích giới"));
    EXPECT_TRUE(Tree().isExpanded(Tree().NodeOf(2).siblingAtColumn(0)));
    SetFilter(u""_s);
    EXPECT_EQ(PassageNames(), all);
    CheckBoxes({});
}

TEST_F(TreeFilter, MatchesByItsRules)
{
    const struct
    {
        const char *rule;
        QString text;
        Names passages;
    } rows[]{{"blanks are no filter", u" \t "_s, all},
             {"blanks at the ends go", u"  lớn "_s, {u"Chương lớn"_s}},
             {"diacritics count", u"lon"_s, {}},
             {"percent is a wildcard", u"chương%1"_s, {u"Chương lễ 100%"_s}},
             {"underscore is a wildcard", u"nh_t"_s, {u"Giới thứ nhất"_s}},
             {"a quote is text", u"'"_s, {}},
             {"nothing is mark-up", u"\") or (1=1"_s, {}},
             {"the other language is not searched", u"paṭhama"_s, {}},
             {"an endless text matches nothing", QString(10000, u'x'), {}}};
    for (const auto &row : rows) {
        SetFilter(row.text);
        EXPECT_EQ(PassageNames(), row.passages) << row.rule;
        EXPECT_EQ(GroupCount(), 3) << row.rule;
    }
    SetFilter(u"nhất"_s);
    const QByteArray page = Browser().Source();
    EXPECT_FALSE(window->qryTreeSutas.Locate(u"ID_VIC"_s, 1201)) << "outside the filter";
    EXPECT_EQ(Browser().Source(), page);
    CheckBoxes({});
}

TEST_F(TreeFilter, SearchesTheNamesThatShow)
{
    Trigger("acNamePAL");
    SetFilter(u"DUTIYA"_s);
    EXPECT_EQ(PassageNames(), (Names{u"Giới thứ nhì"_s}));
    Trigger("acNameENG"); // hides every name: nothing to filter by
    SetFilter(u"dutiya"_s);
    EXPECT_EQ(PassageNames(), all);
}

TEST_F(TreeFilter, EnterDoesNothingAndArrowsWalkTheRows)
{
    TpFIBDataSet &tree = window->qryTreeSutas;
    const int start = tree.RecNo();
    const auto press = [&](Qt::Key key) {
        QTest::keyClick(&Box(), key);
        EXPECT_EQ(Tree().RowOf(Tree().currentIndex()), tree.RecNo());
        return tree.RecNo();
    };
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
        EXPECT_EQ(press(key), start);
    EXPECT_EQ(press(Qt::Key_Down), start + 1);
    EXPECT_EQ(press(Qt::Key_Up), start);
    tree.Last();
    EXPECT_EQ(press(Qt::Key_Down), tree.RecordCount() - 1);
    tree.First();
    EXPECT_EQ(press(Qt::Key_Up), 0);
}

TEST_F(TreeFilter, EveryOtherReleasedKeyReloadsOnce)
{
    int opened = 0;
    window->qryTreeSutas.AfterOpen = [&] { ++opened; };
    int expected = 0;
    for (const Qt::Key key : {Qt::Key_Shift, Qt::Key_Home, Qt::Key_Left, Qt::Key_A}) {
        ASSERT_TRUE(window->qryTreeSutas.Locate(u"ID_VIC"_s, 1201));
        QTest::keyRelease(&Box(), key);
        EXPECT_EQ(opened, ++expected) << key;
        EXPECT_EQ(window->qryTreeSutas.RecNo(), 0);
    }
    // A held key reloads when it is let go.
    for (int repeat = 0; repeat < 5; ++repeat) {
        QKeyEvent release(QEvent::KeyRelease, Qt::Key_B, Qt::NoModifier, u"b"_s, true);
        QApplication::sendEvent(&Box(), &release);
    }
    QInputMethodEvent composing(u"l"_s, {});
    QApplication::sendEvent(&Box(), &composing);
    EXPECT_EQ(opened, expected);
    QInputMethodEvent commit;
    commit.setCommitString(u"lễ"_s);
    QApplication::sendEvent(&Box(), &commit);
    EXPECT_EQ(opened, expected + 1);
    EXPECT_EQ(PassageNames(), (Names{u"Chương lễ 100%"_s}));
    window->qryTreeSutas.AfterOpen = nullptr;
}

TEST_F(ReaderWindow, EachMoveOfTheCursorComposesOnePage)
{
    StoreDefaults(1, 1101);
    Start();
    int pages = 0;
    const auto change = std::exchange(window->dsKeloraContent.OnDataChange, nullptr);
    window->dsKeloraContent.OnDataChange = [&] {
        ++pages;
        change();
    };
    const QModelIndex node = Tree().NodeOf(Tree().RowOf(Tree().currentIndex()) + 1);
    QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {}, Tree().visualRect(node).center());
    EXPECT_EQ(CurrentName(), u"Giới thứ nhì"_s);
    EXPECT_EQ(Browser().Source(), QByteArray("<p>viet 1102</p>"));
    EXPECT_EQ(pages, 1);
    for (int round = 0; round < 2; ++round) { // a passage on the screen stays, with what was coloured in it
        ASSERT_TRUE(window->qryTreeSutas.Locate(u"ID_VIC"_s, 1201));
        EXPECT_EQ(Tree().currentIndex().data().toString(), u"Chương lớn"_s);
        EXPECT_EQ(Browser().Source(), QByteArray("<p>viet 1201 kinh kinh kinh</p>"));
        EXPECT_EQ(pages, 2);
    }
    window->LoadContentData();
    EXPECT_EQ(pages, 3);
    EXPECT_TRUE(WaitPage());
}

TEST_F(ReaderWindow, AGroupShowsItsOwnNameInAnyMode)
{
    StoreDefaults(1, 1003);
    Start();
    EXPECT_THAT(Browser().Source().toStdString(), testing::HasSubstr("Đại phẩm"));
    const QByteArray page = Browser().Source();
    Find<TcxButton>("btnVietPali").click();
    EXPECT_EQ(Browser().Source(), page);
}

TEST_F(ReaderWindow, ExpandingAndCollapsingTheWholeTree)
{
    StoreDefaults(1, 1101);
    Start();
    const QModelIndex group = Tree().model()->index(0, 0);
    EXPECT_TRUE(Tree().isExpanded(group));
    Find<TcxButton>("btnCollapseTree").click();
    EXPECT_FALSE(Tree().isExpanded(group));
    Find<TcxButton>("btnExpandTree").click();
    EXPECT_TRUE(Tree().isExpanded(group));
    Trigger("acCollapseTree");
    window->LoadContentData(); // a reload discards what was collapsed
    EXPECT_TRUE(Tree().isExpanded(Tree().model()->index(0, 0)));
}

TEST_F(ReaderWindow, NameCommandsChooseColumnToggleAndMargins)
{
    const struct
    {
        const char *action;
        bool pal, vie, palToggle, vieToggle, margins;
    } rows[]{{"acNamePAL", true, false, true, false, true},
             {"acNameVIE", false, true, false, true, true},
             {"acNameENG", false, false, false, false, true},
             {"acNameVietPali", false, true, false, true, false},
             {"bTreeNamePAL", true, false, true, false, true},
             {"bTreeNameVIE", false, true, false, true, true}}; // its toggle is down already
    StoreDefaults(1, 1101, 10);
    Start();
    const QByteArray page = Browser().Source();
    for (const auto &row : rows) {
        SCOPED_TRACE(row.action);
        Trigger("acNameVietPali");
        Trigger(row.action);
        EXPECT_EQ(Find<QObject>("dbtSutasNAME_VIC_PAL").property("Visible").toBool(), row.pal);
        EXPECT_EQ(Find<QObject>("dbtSutasNAME_VIC_VIE").property("Visible").toBool(), row.vie);
        EXPECT_FALSE(Find<QObject>("dbtSutasNAME_VIC_ENG").property("Visible").toBool());
        EXPECT_EQ(Action("bTreeNamePAL").isChecked(), row.palToggle);
        EXPECT_EQ(Action("bTreeNameVIE").isChecked(), row.vieToggle);
        EXPECT_EQ(Find<TcxButton>("btnMarginWidth").isEnabled(), row.margins);
        EXPECT_EQ(Browser().Source(), page);
        EXPECT_EQ(Stored(u"LanguageSutta"_s), QVariant(10));
    }
}
