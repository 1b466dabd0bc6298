#include "toolkit/controls/BarButton.h"
#include "toolkit/controls/BarCombo.h"
#include "toolkit/controls/CxButton.h"

#include <QAction>
#include <QHelpEvent>
#include <QMenu>
#include <QTest>
#include <QToolTip>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

TEST(BarCombo, FiresForEveryOtherIndexAndResetsBeyondTheList)
{
    TBarCombo combo;
    QList<int> seen;
    combo.OnChange = [&] { seen.append(combo.ItemIndex()); };
    combo.AddItem(u"first"_s);
    combo.AddItem(u"second"_s);
    for (const int index : {-1, 1, 1, 0, 7, 7, -1})
        combo.SetItemIndex(index);
    QTest::keyClick(&combo, Qt::Key_Down);
    EXPECT_EQ(seen, (QList<int>{1, 0, -1, -1, 0}));
    combo.OnChange = [] { throw std::runtime_error("refused"); };
    EXPECT_THROW(combo.SetItemIndex(1), std::runtime_error) << "a failure reaches the code that set";
}

TEST(CxButton, FollowsItsActionButKeepsTextAndHint)
{
    QAction action(u"Sao chép"_s);
    TcxButton button;
    button.setText(u"own"_s);
    button.setToolTip(u"own hint"_s);
    action.setEnabled(false);
    button.SetAction(&action);
    EXPECT_FALSE(button.isEnabled());
    action.setEnabled(true);
    action.setText(u"Copy"_s);
    action.setCheckable(true);
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_TRUE(action.isChecked());
    EXPECT_EQ(button.text() + button.toolTip() + button.accessibleName(), u"ownown hintown hint"_s);
}

TEST(BarButton, WithoutAHintOfItsOwnTellsCaptionAndShortcut)
{
    QAction action(u" &Tìm kiếm "_s);
    QToolButton bar;
    TcxButton button;
    SetBarAction(bar, action);
    button.SetAction(&action);
    const auto hints = [&] {
        QHelpEvent event(QEvent::ToolTip, {}, {});
        QCoreApplication::sendEvent(&button, &event);
        return bar.toolTip() + u'|' + QToolTip::text();
    };
    button.show();
    EXPECT_EQ(hints(), u"Tìm kiếm|Tìm kiếm"_s);
    action.setShortcuts({QKeySequence(Qt::Key_F2), QKeySequence(Qt::CTRL | Qt::Key_K)});
    EXPECT_EQ(hints(), u"Tìm kiếm (F2)|Tìm kiếm (F2)"_s);
    action.setText(u"Search"_s);
    EXPECT_EQ(hints(), u"Search (F2)|Search (F2)"_s) << "as after a change of the language";
    action.setToolTip(u"given"_s);
    button.setToolTip(u"own"_s);
    EXPECT_EQ(hints(), u"given|own"_s);
    QToolTip::hideText();
}

TEST(CxButton, TheArrowPopsTheMenuAtTheMouseAndTheBodyClicks)
{
    TcxButton button;
    QMenu menu;
    menu.addAction(u"item"_s);
    button.setText(u"0"_s);
    button.SetDropDownMenu(&menu);
    button.resize(80, 30);
    button.show();
    int clicks = 0;
    QObject::connect(&button, &QToolButton::clicked, &menu, [&] { ++clicks; });
    QTest::mouseClick(&button, Qt::LeftButton, {}, {10, 15});
    EXPECT_FALSE(menu.isVisible());
    const QPoint arrow(76, 12);
    QTest::mousePress(&button, Qt::LeftButton, {}, arrow);
    EXPECT_TRUE(menu.isVisible());
    EXPECT_EQ(menu.pos(), button.mapToGlobal(arrow));
    menu.close();
    EXPECT_EQ(clicks, 1);
}
