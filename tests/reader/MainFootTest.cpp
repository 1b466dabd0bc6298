#include "reader/ReaderWindow.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenu>

using namespace Qt::StringLiterals;

namespace {

class Foot : public ReaderWindow
{
protected:
    std::string Told() { return Find<QLabel>("lbFootText").text().toStdString(); }
    QWidget &Bar() { return Find<QWidget>("barFoot"); }
};

} // namespace

TEST_F(Foot, TellsTheTextOnShowItsNumberAndItsGroups)
{
    StartOn();
    EXPECT_EQ(Told(), "Giới thứ nhất  ·  1101  ·  Bất cộng trụ  ·  Phân tích giới");
    GoTo(1201);
    EXPECT_EQ(Told(), "Chương lớn  ·  1201  ·  Đại phẩm");
    Trigger("acNamePAL");
    EXPECT_EQ(Told(), "Mahākhandhaka  ·  1201  ·  Mahāvagga");
    GoTo(1003);
    EXPECT_EQ(Told(), "Mahāvagga") << "a group has no number";
}

TEST_F(Foot, StaysHiddenFromOneRunToTheNext)
{
    StartOn();
    Activate();
    EXPECT_TRUE(Bar().isVisible());
    QTest::keyClick(window.get(), Qt::Key_F6, Qt::ControlModifier);
    EXPECT_FALSE(Bar().isVisible());
    End();
    Start();
    EXPECT_FALSE(Bar().isVisible());
    EXPECT_FALSE(Action("acFoot").isChecked());
    Trigger("acFoot");
    EXPECT_TRUE(Bar().isVisible());
}

TEST_F(Foot, F6GoesRoundTreePageAndFoot)
{
    StartOn();
    Activate();
    const auto area = [this] {
        for (const char *name : {"lcTree", "lcContent", "barFoot"})
            if (Find<QWidget>(name).isAncestorOf(QApplication::focusWidget()))
                return std::string(name);
        return std::string();
    };
    EXPECT_EQ(area(), "lcTree");
    for (const char *next : {"lcContent", "barFoot", "lcTree"}) {
        Trigger("acNextArea");
        EXPECT_EQ(area(), next);
    }
    Trigger("acPriorArea");
    EXPECT_EQ(area(), "barFoot");
    Trigger("acFoot");
    EXPECT_EQ(area(), "lcContent") << "the focus leaves what is hidden";
    Trigger("acNextArea");
    EXPECT_EQ(area(), "lcTree");
}

TEST_F(Foot, ComesBehindThePageAndItsFindBarByTheTabKey)
{
    StartOn();
    EXPECT_TRUE(WaitPage());
    const auto order = [this] {
        QStringList names;
        for (QWidget *next = Browser().focusProxy()->nextInFocusChain(); next != window.get();
             next = next->nextInFocusChain()) {
            if (next->isVisible() && next->isEnabled() && (next->focusPolicy() & Qt::TabFocus))
                names.append(next->objectName());
        }
        return names.join(u' ').toStdString();
    };
    EXPECT_EQ(order(), "btnMore");
    Trigger("acFindDialog");
    EXPECT_EQ(order(), "edFindText cbMatchCase cbWholeWord btnFindClose btnMore") << "nothing is sought yet";
}

TEST_F(Foot, AWelcomeComesAtTheFirstStartAloneAndOnDemand)
{
    Start();
    EXPECT_TRUE(WaitFor([] { return FindForm(u"frmWelcome"_s) != nullptr; }));
    End();
    Start();
    QCoreApplication::processEvents();
    EXPECT_FALSE(FindForm(u"frmWelcome"_s));
    Trigger("acWelcome");
    ASSERT_TRUE(FindForm(u"frmWelcome"_s));
    QTest::keyClick(FindForm(u"frmWelcome"_s), Qt::Key_Escape);
    EXPECT_FALSE(FindForm(u"frmWelcome"_s));
}

TEST_F(Foot, OffersTheNamesThatMatchWithoutMarksWhereTheFilterFindsNone)
{
    StartOn();
    auto &filter = Find<QLineEdit>("edFilterSutta");
    auto &offer = Find<QToolButton>("btnFootNames");
    const auto type = [&](const QString &text) {
        filter.setText(text);
        QTest::keyClick(&filter, Qt::Key_Space);
    };
    const auto names = [&] {
        QStringList names;
        for (const QAction *name : Find<QMenu>("ppFootNames").actions())
            names += name->text();
        return names.join(u'|').toStdString();
    };
    type(u"xyzzy"_s);
    EXPECT_EQ(Find<QLabel>("lbFootMessage").text(), u"Không có tên nào chứa “xyzzy”."_s);
    EXPECT_FALSE(offer.isVisible());
    type(u"DUTIYA"_s);
    EXPECT_EQ(names(), "Dutiya") << "in another language";
    type(u"chuong"_s);
    EXPECT_TRUE(PassageNames().isEmpty() && offer.isVisible());
    EXPECT_EQ(names(), "Chương lớn|Chương lễ 100%");
    Find<QMenu>("ppFootNames").actions().last()->trigger();
    EXPECT_EQ(CurrentId(), 9971);
    EXPECT_EQ(filter.text(), QString());
    EXPECT_EQ(PassageNames().size(), 4);
    EXPECT_FALSE(offer.isVisible());
    EXPECT_EQ(Find<QLabel>("lbFootMessage").text(), QString());
    window->TellInFoot(u"told before"_s, u"act"_s, [] {});
    type(u"chuong"_s);
    EXPECT_FALSE(Find<QToolButton>("btnFootAction").isVisible());
    type(u"chương"_s);
    EXPECT_FALSE(offer.isVisible()) << "the filter finds some again";
    EXPECT_EQ(Find<QLabel>("lbFootMessage").text(), u"told before"_s);
    EXPECT_TRUE(Find<QToolButton>("btnFootAction").isVisible());
}
