#include "support/WaitFor.h"
#include "toolkit/BarCombo.h"
#include "toolkit/CxButton.h"
#include "toolkit/CxTextEdit.h"
#include "toolkit/Doors.h"

#include <QAction>
#include <QApplication>
#include <QHelpEvent>
#include <QInputMethodEvent>
#include <QMenu>
#include <QStyleOptionToolButton>
#include <QTest>
#include <QToolTip>

#include <gmock/gmock.h>

TEST(BarCombo, FillingChoosesAndFiresNothing)
{
    TBarCombo combo;
    int changes = 0;
    combo.OnChange = [&] { ++changes; };
    combo.AddItem(QStringLiteral("first"));
    combo.AddItem(QStringLiteral("second"));
    EXPECT_EQ(combo.ItemIndex(), -1);
    EXPECT_EQ(changes, 0);
}

TEST(BarCombo, FiresOncePerRealChangeAndResetsBeyondTheList)
{
    TBarCombo combo;
    combo.AddItem(QStringLiteral("first"));
    combo.AddItem(QStringLiteral("second"));
    QList<int> seen;
    combo.OnChange = [&] { seen.append(combo.ItemIndex()); };
    for (const int index : {-1, 1, 1, 0, 7, -1})
        combo.SetItemIndex(index);
    EXPECT_EQ(seen, (QList<int>{1, 0, -1}));
    QTest::keyClick(&combo, Qt::Key_Down);
    EXPECT_EQ(seen.last(), 0);
}

TEST(BarCombo, AFailureReachesTheCodeThatSet)
{
    TBarCombo combo;
    combo.AddItem(QStringLiteral("first"));
    combo.OnChange = [] { throw std::runtime_error("refused"); };
    EXPECT_THROW(combo.SetItemIndex(0), std::runtime_error);
}

namespace {

struct KeyRun
{
    const char *rule;
    QEvent::Type type;
    int key;
    bool repeats;
    QList<int> heard;
};

class TextEditKeys : public testing::TestWithParam<KeyRun>
{};

} // namespace

TEST_P(TextEditKeys, TellsOfReleasedKeys)
{
    TcxTextEdit edit;
    QList<int> heard;
    edit.OnKeyUp = [&](int key) { heard.append(key); };
    QKeyEvent event(GetParam().type, GetParam().key, Qt::NoModifier, {}, GetParam().repeats);
    QApplication::sendEvent(&edit, &event);
    EXPECT_EQ(heard, GetParam().heard);
}

INSTANTIATE_TEST_SUITE_P(Rules, TextEditKeys,
                         testing::Values(KeyRun{"APressIsNone", QEvent::KeyPress, Qt::Key_A, false, {}},
                                         KeyRun{"ARelease", QEvent::KeyRelease, Qt::Key_A, false, {Qt::Key_A}},
                                         KeyRun{"Shift", QEvent::KeyRelease, Qt::Key_Shift, false, {Qt::Key_Shift}},
                                         KeyRun{"ARepeatedRelease", QEvent::KeyRelease, Qt::Key_A, true, {}}),
                         [](const auto &info) { return std::string(info.param.rule); });

TEST(TextEdit, ACommittedTextCountsAsAKeyAndIsThereAlready)
{
    TcxTextEdit edit;
    QStringList textsAtKey;
    edit.OnKeyUp = [&](int) { textsAtKey.append(edit.text()); };
    QInputMethodEvent composing(QStringLiteral("e"), {});
    QApplication::sendEvent(&edit, &composing);
    EXPECT_EQ(textsAtKey, QStringList());
    QInputMethodEvent commit;
    commit.setCommitString(QStringLiteral("ế"));
    QApplication::sendEvent(&edit, &commit);
    EXPECT_EQ(textsAtKey, QStringList{QStringLiteral("ế")});
}

TEST(CxButton, FollowsItsActionButKeepsTextAndHint)
{
    QAction action(QStringLiteral("Sao chép"));
    TcxButton button;
    button.setText(QStringLiteral("own"));
    button.setToolTip(QStringLiteral("own hint"));
    action.setEnabled(false);
    button.SetAction(&action);
    EXPECT_FALSE(button.isEnabled());
    action.setEnabled(true);
    action.setText(QStringLiteral("Copy"));
    EXPECT_TRUE(button.isEnabled());
    EXPECT_EQ(button.text(), QStringLiteral("own"));
    EXPECT_EQ(button.toolTip(), QStringLiteral("own hint"));
    EXPECT_EQ(button.accessibleName(), QStringLiteral("own hint"));
    int runs = 0;
    QObject::connect(&action, &QAction::triggered, &button, [&] { ++runs; });
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_EQ(runs, 1);
}

TEST(CxButton, APictureAloneIsNamedByItsAction)
{
    QAction action(QStringLiteral("Mở rộng"));
    TcxButton button;
    button.SetAction(&action);
    EXPECT_EQ(button.accessibleName(), QStringLiteral("Mở rộng"));
}

TEST(CxButton, AHintThatIsOffExistsUnseen)
{
    TcxButton button;
    button.resize(40, 30);
    button.setToolTip(QStringLiteral("hint"));
    button.show();
    const auto ask = [&] {
        QToolTip::hideText();
        QHelpEvent event(QEvent::ToolTip, {5, 5}, button.mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(&button, &event);
        return QToolTip::text();
    };
    EXPECT_EQ(ask(), QStringLiteral("hint"));
    EXPECT_TRUE(button.setProperty("ShowHint", false));
    EXPECT_TRUE(WaitFor([&] { return ask().isEmpty() || !QToolTip::isVisible(); }));
    EXPECT_EQ(button.toolTip(), QStringLiteral("hint"));
}

TEST(CxButton, TheArrowPopsTheMenuAtTheMouseAndTheBodyClicks)
{
    TcxButton button;
    QMenu menu;
    menu.addAction(QStringLiteral("item"));
    button.setText(QStringLiteral("0"));
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
