#include "reader/ReaderWindow.h"

#include "toolkit/controls/BarCombo.h"

#include <QApplication>
#include <QScreen>
#include <QSignalSpy>
#include <QTableWidget>

using namespace Qt::StringLiterals;

namespace {

class MainKeys : public ReaderWindow
{
protected:
    void SetUp() override
    {
        AddEnglish();
        StartOn();
        Activate();
    }
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier)
    {
        QTest::keyClick(window.get(), key, modifiers);
    }
};

TEST_F(MainKeys, ZoomThePageAndChooseItsLanguage)
{
    for (const auto &[key, zoom] : {std::pair(Qt::Key_Plus, 110),
                                    {Qt::Key_Equal, 120},
                                    {Qt::Key_Minus, 110},
                                    {Qt::Key_0, 100},
                                    {Qt::Key_Minus, 90}}) {
        Press(key);
        EXPECT_EQ(Browser().ZoomPercent(), zoom) << key;
    }
    for (const auto &[key, button, page] : {std::tuple(Qt::Key_1, "btnPali", "pali 1101"),
                                            {Qt::Key_3, "btnVietPali", "parallel 1101"},
                                            {Qt::Key_2, "btnViet", "viet 1101"}}) {
        Press(key);
        EXPECT_TRUE(Find<TcxButton>(button).isChecked());
        EXPECT_EQ(Find<TcxButton>("btnMarginWidth").isEnabled(), key != Qt::Key_3) << "as the button does";
        EXPECT_THAT(Page(), testing::HasSubstr(page));
    }
    EXPECT_EQ(Stored(u"LanguageSutta"_s), 1);
}

TEST_F(MainKeys, WalkTheTextsInTheOrderOfTheTreePastItsGroups)
{
    Trigger("acCollapseTree");
    GoTo(1101);
    for (const auto &[key, id] : {std::pair(Qt::Key_PageDown, 1102),
                                  {Qt::Key_PageDown, 1201},
                                  {Qt::Key_PageDown, 9971},
                                  {Qt::Key_PageDown, 9971},
                                  {Qt::Key_PageUp, 1201},
                                  {Qt::Key_PageUp, 1102},
                                  {Qt::Key_PageUp, 1101},
                                  {Qt::Key_PageUp, 1101}}) {
        Press(key);
        EXPECT_EQ(CurrentId(), id) << key;
    }
    for (const auto &[key, id] : {std::pair(Qt::Key_PageDown, 1201), {Qt::Key_PageUp, 1102}}) {
        GoTo(1003);
        Press(key);
        EXPECT_EQ(CurrentId(), id) << "from a group";
    }
}

TEST_F(MainKeys, LeaveTheFilterBoxBeforeTheirReleaseCouldReloadTheTree)
{
    auto &box = Find<QLineEdit>("edFilterSutta");
    box.setFocus();
    QTest::keyPress(&box, Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_TRUE(Find<QWidget>("lcContent").isAncestorOf(QApplication::focusWidget()));
    QTest::keyRelease(QApplication::focusWidget(), Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(CurrentId(), 1102);
    Tree().setFocus();
    Press(Qt::Key_PageDown);
    EXPECT_TRUE(Tree().hasFocus()) << "from elsewhere the focus stays";
}

TEST_F(MainKeys, DoWhatGivenCommandsDo)
{
    for (const auto &[key, command] : {std::pair(Qt::Key_P, "acPrint"), {Qt::Key_S, "acSave"}}) {
        QObject::disconnect(&Action(command), &QAction::triggered, nullptr, nullptr); // its dialog
        const QSignalSpy runs(&Action(command), &QAction::triggered);
        Press(key);
        EXPECT_EQ(runs.size(), 1) << command;
    }
    Press(Qt::Key_F1, Qt::NoModifier);
    ASSERT_EQ(opened.size(), 1);
    EXPECT_TRUE(opened[0].endsWith(u"/LumivaraUserGuide.pdf"_s));
    Press(Qt::Key_Q);
    CheckBoxes({{u"Thông báo"_s, u"Đồng ý thoát khỏi Lumivara?"_s}});
    EXPECT_TRUE(window->isVisible()) << "the answer was no";
}

TEST_F(MainKeys, TheWholeScreenIsLeftByItsKeyOrByEscapeOnceTheFindBarIsClosed)
{
    const auto mayLeave = [this] { return Action("acLeaveFullScreen").isEnabled(); };
    // The window manager tells of states late, and of older ones in between: it's done where the size is there.
    const auto covers = [this] { return window->size() == window->screen()->size(); };
    EXPECT_FALSE(mayLeave());
    for (const Qt::Key leave : {Qt::Key_F11, Qt::Key_Escape}) {
        Press(Qt::Key_F11, Qt::NoModifier);
        EXPECT_TRUE(window->isFullScreen() && Action("acFullScreen").isChecked());
        EXPECT_TRUE(WaitFor([&] { return covers() && mayLeave(); }));
        Trigger("acFindDialog");
        EXPECT_TRUE(WaitFor([&] { return !mayLeave(); }));
        QTest::keyClick(&Find<QLineEdit>("edFindText"), Qt::Key_Escape);
        EXPECT_FALSE(Find<QWidget>("dlgFind").isVisible());
        EXPECT_TRUE(window->isFullScreen());
        EXPECT_TRUE(WaitFor(mayLeave));
        Press(leave, Qt::NoModifier);
        EXPECT_FALSE(window->isFullScreen() || Action("acFullScreen").isChecked());
        EXPECT_TRUE(WaitFor([&] { return window->isMaximized() && !window->isFullScreen() && !covers(); }))
            << "as before";
    }
}

TEST_F(MainKeys, AreListedFromTheActionsInTheLanguageOfTheInterface)
{
    Trigger("acKeys");
    QPointer<QWidget> form = FindForm(u"frmKeys"_s);
    ASSERT_TRUE(form);
    auto &table = In<QTableWidget>(*form, "tblKeys");
    const auto rowOf = [&](const QString &command) {
        const QList<QTableWidgetItem *> found = table.findItems(command, Qt::MatchExactly);
        return found.size() == 1
                   ? table.item(found[0]->row(), 0)->text() + u'|' + table.item(found[0]->row(), 2)->text()
                   : QString::number(found.size());
    };
    EXPECT_EQ(rowOf(u"Toàn màn hình"_s), u"F11|cửa sổ chính"_s);
    EXPECT_EQ(rowOf(u"Tìm kiếm"_s), u"F2, Ctrl+Shift+F|cửa sổ chính"_s);
    EXPECT_EQ(rowOf(u"Đóng cửa sổ này"_s), u"Ctrl+W|các cửa sổ khác"_s);
    EXPECT_EQ(table.findItems(u"Thoát"_s, Qt::MatchExactly).size(), 0) << "it has no key";
    Find<TBarCombo>("bcbLanguage").SetItemIndex(1);
    EXPECT_TRUE(WaitFor([&] { return rowOf(u"Full screen"_s) == u"F11|main window"_s; }));
    EXPECT_EQ(rowOf(u"Close this window"_s), u"Ctrl+W|other windows"_s);
    EXPECT_EQ(table.horizontalHeaderItem(1)->text(), u"Does"_s);
    for (const auto &[key, modifiers] : {std::pair(Qt::Key_Escape, Qt::NoModifier), {Qt::Key_W, Qt::ControlModifier}}) {
        form->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(form));
        QTest::keyClick(&In<QTableWidget>(*form, "tblKeys"), key, modifiers);
        EXPECT_TRUE(WaitFor([] { return !FindForm(u"frmKeys"_s); })) << key;
        Trigger("acKeys");
        form = FindForm(u"frmKeys"_s);
        ASSERT_TRUE(form);
    }
}

} // namespace
