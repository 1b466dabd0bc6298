#include "reader/ReaderWindow.h"

#include "toolkit/BrowserControl.h"
#include "toolkit/CxButton.h"
#include "toolkit/CxTextEdit.h"
#include "toolkit/DBTreeList.h"

#include <QAbstractItemModelTester>
#include <QInputMethodEvent>

namespace {

QStringList Names(std::initializer_list<const char *> names)
{
    QStringList texts;
    for (const char *name : names)
        texts.append(QString::fromUtf8(name));
    return texts;
}

class TreeFilter : public ReaderWindow
{
protected:
    void SetUp() override
    {
        StoreDefaults(1, 1101);
        Start();
    }
    TcxTextEdit &Box() { return Find<TcxTextEdit>("edFilterSutta"); }
    void SetFilter(const char *text)
    {
        Box().setText(QString::fromUtf8(text));
        QTest::keyRelease(&Box(), Qt::Key_Shift);
    }
    int GroupCount() { return window->qryTreeSutas.RecordCount() - static_cast<int>(PassageNames().size()); }
    const QStringList all = Names({"Giới thứ nhất", "Giới thứ nhì", "Chương lớn", "Chương lễ 100%"});
};

} // namespace

TEST_F(TreeFilter, TypingKeepsTheGroupsAndThePassagesThatHoldTheText)
{
    const QAbstractItemModelTester tester(Tree().model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(PassageNames(), all);
    Type(Box(), QString::fromUtf8("CHƯƠNG"));
    EXPECT_EQ(PassageNames(), Names({"Chương lớn", "Chương lễ 100%"}));
    EXPECT_EQ(GroupCount(), 3);
    EXPECT_EQ(CurrentName(), QString::fromUtf8("Phân tích giới"));
    EXPECT_THAT(Browser().Source().toStdString(), testing::HasSubstr("Phân tích giới"));
    EXPECT_TRUE(Tree().isExpanded(Tree().NodeOf(2).siblingAtColumn(0)));
    SetFilter("");
    EXPECT_EQ(PassageNames(), all);
    CheckBoxes({});
}

namespace {

struct Filter
{
    const char *rule;
    const char *text;
    QStringList passages;
};

class TreeFilters : public TreeFilter, public testing::WithParamInterface<Filter>
{};

} // namespace

TEST_P(TreeFilters, Match)
{
    SetFilter(GetParam().text);
    EXPECT_EQ(PassageNames(), GetParam().passages);
    EXPECT_EQ(GroupCount(), 3);
    CheckBoxes({});
}

INSTANTIATE_TEST_SUITE_P(
    Rules, TreeFilters,
    testing::Values(Filter{"BlanksAreNoFilter", " \t ",
                           Names({"Giới thứ nhất", "Giới thứ nhì", "Chương lớn", "Chương lễ 100%"})},
                    Filter{"BlanksAtTheEndsGo", "  lớn ", Names({"Chương lớn"})}, Filter{"DiacriticsCount", "lon", {}},
                    Filter{"PercentIsAWildcard", "chương%1", Names({"Chương lễ 100%"})},
                    Filter{"UnderscoreIsAWildcard", "nh_t", Names({"Giới thứ nhất"})}, Filter{"AQuoteIsText", "'", {}},
                    Filter{"NothingIsMarkUp", "\") or (1=1", {}},
                    Filter{"TheOtherLanguageIsNotSearched", "paṭhama", {}}),
    [](const auto &info) { return std::string(info.param.rule); });

TEST_F(TreeFilter, AnEndlessTextMatchesNothingAndSaysNothing)
{
    SetFilter(std::string(10000, 'x').c_str());
    EXPECT_EQ(PassageNames(), QStringList());
    EXPECT_EQ(GroupCount(), 3);
    CheckBoxes({});
}

TEST_F(TreeFilter, SearchesTheNamesThatShow)
{
    Trigger("acNamePAL");
    SetFilter("DUTIYA");
    EXPECT_EQ(PassageNames(), Names({"Giới thứ nhì"}));
    Trigger("acNameENG"); // hides every name: nothing to filter by
    SetFilter("dutiya");
    EXPECT_EQ(PassageNames(), all);
}

TEST_F(TreeFilter, EnterDoesNothingAndArrowsWalkTheRows)
{
    TpFIBDataSet &tree = window->qryTreeSutas;
    const int start = tree.RecNo();
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
        QTest::keyClick(&Box(), key);
    EXPECT_EQ(tree.RecNo(), start);
    QTest::keyClick(&Box(), Qt::Key_Down);
    EXPECT_EQ(tree.RecNo(), start + 1);
    EXPECT_EQ(Tree().RowOf(Tree().currentIndex()), start + 1);
    QTest::keyClick(&Box(), Qt::Key_Up);
    EXPECT_EQ(tree.RecNo(), start);
    tree.Last();
    QTest::keyClick(&Box(), Qt::Key_Down);
    EXPECT_EQ(tree.RecNo(), tree.RecordCount() - 1);
    tree.First();
    QTest::keyClick(&Box(), Qt::Key_Up);
    EXPECT_EQ(tree.RecNo(), 0);
}

TEST_F(TreeFilter, EveryOtherReleasedKeyReloadsOnce)
{
    int opened = 0;
    window->qryTreeSutas.AfterOpen = [&] { ++opened; };
    int expected = 0;
    for (const Qt::Key key : {Qt::Key_Shift, Qt::Key_Home, Qt::Key_Left, Qt::Key_A}) {
        ASSERT_TRUE(window->qryTreeSutas.Locate(QStringLiteral("ID_VIC"), 1201));
        QTest::keyRelease(&Box(), key);
        EXPECT_EQ(opened, ++expected) << key;
        EXPECT_EQ(window->qryTreeSutas.RecNo(), 0);
    }
    // A held key reloads when it is let go.
    for (int repeat = 0; repeat < 5; ++repeat) {
        QKeyEvent release(QEvent::KeyRelease, Qt::Key_B, Qt::NoModifier, QStringLiteral("b"), true);
        QApplication::sendEvent(&Box(), &release);
    }
    EXPECT_EQ(opened, expected);
    QInputMethodEvent commit;
    commit.setCommitString(QString::fromUtf8("lễ"));
    QApplication::sendEvent(&Box(), &commit);
    EXPECT_EQ(opened, expected + 1);
    EXPECT_EQ(PassageNames(), Names({"Chương lễ 100%"}));
    window->qryTreeSutas.AfterOpen = nullptr;
}

TEST_F(TreeFilter, ALocateOutsideTheFilterFailsAndThePageStays)
{
    SetFilter("nhất");
    const QByteArray page = Browser().Source();
    EXPECT_FALSE(window->qryTreeSutas.Locate(QStringLiteral("ID_VIC"), 1201));
    EXPECT_EQ(Browser().Source(), page);
}

// --- Cursor and page ------------------------------------------------------------------------------------------------

TEST_F(ReaderWindow, AClickOnANodeMovesTheCursorAndShowsThePage)
{
    StoreDefaults(1, 1101);
    Start();
    const QModelIndex node = Tree().NodeOf(Tree().RowOf(Tree().currentIndex()) + 1);
    QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {}, Tree().visualRect(node).center());
    EXPECT_EQ(CurrentName(), QString::fromUtf8("Giới thứ nhì"));
    EXPECT_EQ(Browser().Source(), QByteArray("<p>viet 1102</p>"));
    EXPECT_TRUE(WaitPage());
}

TEST_F(ReaderWindow, ALocateSelectsTheNodeAndComposesOnePage)
{
    StoreDefaults(1, 1101);
    Start();
    ASSERT_TRUE(window->qryTreeSutas.Locate(QStringLiteral("ID_VIC"), 1201));
    EXPECT_EQ(Tree().currentIndex().data().toString(), QString::fromUtf8("Chương lớn"));
    EXPECT_EQ(Browser().Source(), QByteArray("<p>viet 1201 kinh kinh kinh</p>"));
}

TEST_F(ReaderWindow, AReloadComposesOnePage)
{
    StoreDefaults(1, 1101);
    Start();
    int pages = 0;
    const auto change = std::exchange(window->dsKeloraContent.OnDataChange, nullptr);
    window->dsKeloraContent.OnDataChange = [&] {
        ++pages;
        change();
    };
    window->LoadContentData();
    EXPECT_EQ(pages, 1);
    ASSERT_TRUE(window->qryTreeSutas.Locate(QStringLiteral("ID_VIC"), 1102));
    EXPECT_EQ(pages, 2);
    // A passage that is on the screen already stays, with what was coloured in it.
    ASSERT_TRUE(window->qryTreeSutas.Locate(QStringLiteral("ID_VIC"), 1102));
    EXPECT_EQ(pages, 2);
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

// --- Names ----------------------------------------------------------------------------------------------------------

namespace {

struct Names4
{
    const char *action;
    bool pal, vie, palToggle, vieToggle, margins;
};

class NameActions : public ReaderWindow, public testing::WithParamInterface<Names4>
{};

} // namespace

TEST_P(NameActions, ChooseColumnToggleAndMargins)
{
    StoreDefaults(1, 1101, 10);
    Start();
    const QByteArray page = Browser().Source();
    Trigger(GetParam().action);
    EXPECT_EQ(Find<QObject>("dbtSutasNAME_VIC_PAL").property("Visible").toBool(), GetParam().pal);
    EXPECT_EQ(Find<QObject>("dbtSutasNAME_VIC_VIE").property("Visible").toBool(), GetParam().vie);
    EXPECT_FALSE(Find<QObject>("dbtSutasNAME_VIC_ENG").property("Visible").toBool());
    EXPECT_EQ(Action("bTreeNamePAL").isChecked(), GetParam().palToggle);
    EXPECT_EQ(Action("bTreeNameVIE").isChecked(), GetParam().vieToggle);
    EXPECT_EQ(Find<TcxButton>("btnMarginWidth").isEnabled(), GetParam().margins);
    EXPECT_EQ(Browser().Source(), page);
    EXPECT_EQ(Stored(QStringLiteral("LanguageSutta")), QVariant(10));
}

INSTANTIATE_TEST_SUITE_P(Actions, NameActions,
                         testing::Values(Names4{"acNamePAL", true, false, true, false, true},
                                         Names4{"acNameVIE", false, true, false, true, true},
                                         Names4{"acNameENG", false, false, false, false, true},
                                         Names4{"acNameVietPali", false, true, false, true, false},
                                         Names4{"bTreeNamePAL", true, false, true, false, true},
                                         Names4{"bTreeNameVIE", false, true, false, true, true}),
                         [](const auto &info) { return std::string(info.param.action); });

TEST_F(ReaderWindow, AToggleThatIsDownStaysDown)
{
    StoreDefaults(1, 1101);
    Start();
    Trigger("bTreeNameVIE");
    Trigger("bTreeNameVIE");
    EXPECT_TRUE(Action("bTreeNameVIE").isChecked());
    EXPECT_FALSE(Action("bTreeNamePAL").isChecked());
}
