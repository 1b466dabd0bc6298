#include "support/WaitFor.h"
#include "toolkit/BarCombo.h"
#include "toolkit/CxButton.h"

#include <QAction>
#include <QApplication>
#include <QHelpEvent>
#include <QMenu>
#include <QTest>
#include <QToolTip>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

TEST(BarCombo, FiresOncePerRealChangeAndResetsBeyondTheList)
{
    TBarCombo combo;
    QList<int> seen;
    combo.OnChange = [&] { seen.append(combo.ItemIndex()); };
    combo.AddItem(u"first"_s);
    combo.AddItem(u"second"_s);
    EXPECT_EQ(combo.ItemIndex(), -1);
    for (const int index : {-1, 1, 1, 0, 7, -1})
        combo.SetItemIndex(index);
    EXPECT_EQ(seen, (QList<int>{1, 0, -1}));
    QTest::keyClick(&combo, Qt::Key_Down);
    EXPECT_EQ(seen.last(), 0);
}

TEST(BarCombo, AFailureReachesTheCodeThatSet)
{
    TBarCombo combo;
    combo.AddItem(u"first"_s);
    combo.OnChange = [] { throw std::runtime_error("refused"); };
    EXPECT_THROW(combo.SetItemIndex(0), std::runtime_error);
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
    EXPECT_TRUE(button.isEnabled());
    EXPECT_EQ(button.text(), u"own"_s);
    EXPECT_EQ(button.toolTip(), u"own hint"_s);
    EXPECT_EQ(button.accessibleName(), u"own hint"_s);
    int runs = 0;
    QObject::connect(&action, &QAction::triggered, &button, [&] { ++runs; });
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_EQ(runs, 1);
}

TEST(CxButton, AHintThatIsOffExistsUnseen)
{
    TcxButton button;
    button.resize(40, 30);
    button.setToolTip(u"hint"_s);
    button.show();
    const auto ask = [&] {
        QToolTip::hideText();
        QHelpEvent event(QEvent::ToolTip, {5, 5}, button.mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(&button, &event);
        return QToolTip::text();
    };
    EXPECT_EQ(ask(), u"hint"_s);
    EXPECT_TRUE(button.setProperty("ShowHint", false));
    EXPECT_TRUE(WaitFor([&] { return ask().isEmpty() || !QToolTip::isVisible(); }));
    EXPECT_EQ(button.toolTip(), u"hint"_s);
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
    EXPECT_EQ(clicks, 1);
    EXPECT_FALSE(menu.isVisible());
    const QPoint arrow(76, 12);
    QTest::mousePress(&button, Qt::LeftButton, {}, arrow);
    EXPECT_TRUE(menu.isVisible());
    EXPECT_EQ(menu.pos(), button.mapToGlobal(arrow));
    menu.close();
    EXPECT_EQ(clicks, 1);
}
