#include "reader/ReaderWindow.h"

#include "toolkit/controls/CxTextEdit.h"

#include <QAbstractItemModelTester>
#include <QInputMethodEvent>

using namespace Qt::StringLiterals;

namespace {

class TreeFilter : public ReaderWindow
{
protected:
    void SetUp() override { StartOn(); }
    TcxTextEdit &Box() { return Find<TcxTextEdit>("edFilterSutta"); }
    QString Filtered(const QString &text)
    {
        Box().setText(text);
        QTest::keyRelease(&Box(), Qt::Key_Shift);
        return Passages();
    }
    QString Passages()
    {
        EXPECT_EQ(window->qryTreeSutas.RecordCount() - PassageNames().size(), 3) << "groups stay";
        return PassageNames().join(u'|');
    }
    const QString all = u"Giới thứ nhất|Giới thứ nhì|Chương lớn|Chương lễ 100%"_s;
};

} // namespace

TEST_F(TreeFilter, TypingKeepsTheGroupsAndThePassagesThatHoldTheText)
{
    const QAbstractItemModelTester tester(Tree().model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(Passages(), all);
    Type(Box(), u"CHƯƠNG"_s);
    EXPECT_EQ(Passages(), u"Chương lớn|Chương lễ 100%"_s);
    EXPECT_EQ(CurrentName(), u"Phân tích giới"_s);
    EXPECT_THAT(Page(), testing::HasSubstr("Phân tích giới"));
    EXPECT_TRUE(Tree().isExpanded(Tree().NodeOf(2).siblingAtColumn(0)));
    EXPECT_EQ(Filtered({}), all);
}

TEST_F(TreeFilter, MatchesByItsRules)
{
    for (const auto &[rule, text, passages] : {std::tuple("blanks are no filter", u" \t "_s, all),
                                               {"blanks at the ends go", u"  lớn "_s, u"Chương lớn"_s},
                                               {"diacritics count", u"lon"_s, u""_s},
                                               {"percent is a wildcard", u"chương%1"_s, u"Chương lễ 100%"_s},
                                               {"underscore is a wildcard", u"nh_t"_s, u"Giới thứ nhất"_s},
                                               {"nothing is mark-up", u"\"') or (1=1"_s, u""_s},
                                               {"the other language is not searched", u"paṭhama"_s, u""_s},
                                               {"an endless text matches nothing", QString(10000, u'x'), u""_s}})
        EXPECT_EQ(Filtered(text), passages) << rule;
    Trigger("acNamePAL");
    EXPECT_EQ(Filtered(u"DUTIYA"_s), u"Giới thứ nhì"_s) << "by the names that show";
    Trigger("acNameENG"); // hides every name: nothing to filter by
    EXPECT_EQ(Filtered(u"dutiya"_s), all);
}

TEST_F(TreeFilter, VelthuisLettersBecomePaliOnesUnderPaliNamesOnceChosen)
{
    Trigger("acNamePAL");
    Type(Box(), u"pa.t"_s);
    EXPECT_EQ(Passages(), u""_s) << "off at first";
    Box().clear();
    Trigger("acVelthuis");
    Type(Box(), u"pa.t"_s);
    EXPECT_EQ(Box().text(), u"paṭ"_s);
    EXPECT_EQ(Passages(), u"Giới thứ nhất"_s);
    QTest::keyClick(&Box(), Qt::Key_Backspace);
    EXPECT_EQ(Box().text(), u"pa.t"_s);
    EXPECT_EQ(Passages(), u""_s);
    for (const auto &[names, text] : {std::pair("acNameVIE", u"aa"_s), {"acNameENG", u"aa"_s}, {"acNamePAL", u"ā"_s}}) {
        Trigger(names);
        Box().clear();
        Type(Box(), u"aa"_s);
        EXPECT_EQ(Box().text(), text) << names;
    }
    End();
    Start();
    EXPECT_TRUE(Action("acVelthuis").isChecked()) << "kept";
}

TEST_F(TreeFilter, EnterDoesNothingAndArrowsWalkTheRows)
{
    TpFIBDataSet &tree = window->qryTreeSutas;
    tree.First();
    for (const auto &[key, row] : {std::pair(Qt::Key_Down, 1), {Qt::Key_Return, 1}, {Qt::Key_Up, 0}, {Qt::Key_Up, 0}}) {
        QTest::keyClick(&Box(), key);
        EXPECT_EQ(tree.RecNo(), row);
        EXPECT_EQ(Tree().RowOf(Tree().currentIndex()), row);
    }
    tree.Last();
    QTest::keyClick(&Box(), Qt::Key_Down);
    EXPECT_EQ(tree.RecNo(), tree.RecordCount() - 1);
}

TEST_F(TreeFilter, EveryOtherReleasedKeyReloadsOnce)
{
    int opened = 0;
    window->qryTreeSutas.AfterOpen = [&] { ++opened; };
    for (const Qt::Key key : {Qt::Key_Shift, Qt::Key_Home, Qt::Key_A}) {
        GoTo(1201);
        QTest::keyRelease(&Box(), key);
        EXPECT_EQ(std::exchange(opened, 0), 1) << key;
        EXPECT_EQ(window->qryTreeSutas.RecNo(), 0);
    }
    QKeyEvent held(QEvent::KeyRelease, Qt::Key_B, Qt::NoModifier, u"b"_s, true); // reloads when it is let go
    QInputMethodEvent composing(u"l"_s, {}), commit;
    commit.setCommitString(u"lễ"_s);
    for (QEvent *event : std::initializer_list<QEvent *>{&held, &composing})
        QApplication::sendEvent(&Box(), event);
    EXPECT_EQ(opened, 0);
    QApplication::sendEvent(&Box(), &commit);
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(Passages(), u"Chương lễ 100%"_s);
    window->qryTreeSutas.AfterOpen = nullptr;
}

TEST_F(TreeFilter, EachMoveOfTheCursorComposesOnePage)
{
    int pages = 0;
    const auto change = std::exchange(window->dsKeloraContent.OnDataChange, nullptr);
    window->dsKeloraContent.OnDataChange = [&] {
        ++pages;
        change();
    };
    const QModelIndex node = Tree().NodeOf(Tree().RowOf(Tree().currentIndex()) + 1);
    QTest::mouseClick(Tree().viewport(), Qt::LeftButton, {}, Tree().visualRect(node).center());
    EXPECT_EQ(CurrentName(), u"Giới thứ nhì"_s);
    EXPECT_EQ(Page(), "<p>viet 1102</p>");
    EXPECT_EQ(pages, 1);
    for (int round = 0; round < 2; ++round) { // a passage on the screen stays, with what was coloured in it
        GoTo(1201);
        EXPECT_EQ(Tree().currentIndex().data().toString(), u"Chương lớn"_s);
        EXPECT_EQ(Page(), "<p>viet 1201 kinh kinh kinh</p>");
        EXPECT_EQ(pages, 2);
    }
    window->LoadContentData();
    EXPECT_EQ(pages, 3);
    EXPECT_TRUE(WaitPage());
}

TEST_F(TreeFilter, GroupsExpandCollapseAndShowTheirNames)
{
    const auto isExpanded = [this] { return Tree().isExpanded(Tree().model()->index(0, 0)); };
    EXPECT_TRUE(isExpanded());
    Click("btnCollapseTree");
    EXPECT_FALSE(isExpanded());
    Click("btnExpandTree");
    EXPECT_TRUE(isExpanded());
    Trigger("acCollapseTree");
    window->LoadContentData(); // a reload discards what was collapsed
    EXPECT_TRUE(isExpanded());
    GoTo(1003);
    const std::string page = Page();
    EXPECT_THAT(page, testing::HasSubstr("Đại phẩm"));
    Click("btnVietPali");
    EXPECT_EQ(Page(), page);
}

TEST_F(ReaderWindow, NameCommandsChooseColumnToggleAndMargins)
{
    StartOn(1101, 10);
    const std::string page = Page();
    const auto shows = [this](const char *column) { return Find<QObject>(column).property("Visible").toBool(); };
    const std::tuple<const char *, bool, bool> rows[]{
        {"acNamePAL", true, false},    {"acNameVIE", false, true},
        {"acNameENG", false, false},   {"acNameVietPali", false, true},
        {"bTreeNamePAL", true, false}, {"bTreeNameVIE", false, true}}; // its toggle is down already
    for (const auto &[action, pal, vie] : rows) {
        SCOPED_TRACE(action);
        Trigger("acNameVietPali");
        Trigger(action);
        EXPECT_TRUE(shows("dbtSutasNAME_VIC_PAL") == pal && Action("bTreeNamePAL").isChecked() == pal);
        EXPECT_TRUE(shows("dbtSutasNAME_VIC_VIE") == vie && Action("bTreeNameVIE").isChecked() == vie);
        EXPECT_FALSE(shows("dbtSutasNAME_VIC_ENG"));
        EXPECT_EQ(Find<TcxButton>("btnMarginWidth").isEnabled(), std::string(action) != "acNameVietPali");
        EXPECT_EQ(Page(), page);
    }
    EXPECT_EQ(Stored(u"LanguageSutta"_s), QVariant(10));
}
