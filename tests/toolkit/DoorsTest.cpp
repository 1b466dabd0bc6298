#include "toolkit/Doors.h"

#include "toolkit/Fonts.h"
#include "toolkit/Guard.h"

#include <QApplication>
#include <QFontInfo>
#include <QLabel>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

struct Box
{
    const char *name;
    BoxButtons buttons;
    Qt::Key key;
    bool answer;
};

} // namespace

class MessageBoxDoor : public testing::TestWithParam<Box>
{};

TEST_P(MessageBoxDoor, ShowsPlainTextAndTellsTheAnswer)
{
    QString name, title, text;
    Qt::TextFormat format = Qt::AutoText;
    QTimer::singleShot(0, qApp, [&] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        name = box->objectName();
        title = box->windowTitle();
        text = box->text();
        format = box->textFormat();
        QTest::keyClick(box, GetParam().key);
    });
    const bool answer =
        Doors().messageBox(u"Title"_s, u"<b>one</b>\rtwo\r\nthree"_s, GetParam().buttons, BoxIcon::Error);
    EXPECT_EQ(answer, GetParam().answer);
    EXPECT_EQ(name, u"msgBox"_s);
    EXPECT_EQ(title, u"Title"_s);
    EXPECT_EQ(text, u"<b>one</b>\ntwo\nthree"_s);
    EXPECT_EQ(format, Qt::PlainText);
}

INSTANTIATE_TEST_SUITE_P(Answers, MessageBoxDoor,
                         testing::Values(Box{"Ok", BoxButtons::Ok, Qt::Key_Return, true},
                                         Box{"YesIsTheDefault", BoxButtons::YesNo, Qt::Key_Return, true},
                                         Box{"EscapeIsNo", BoxButtons::YesNo, Qt::Key_Escape, false}),
                         [](const auto &row) { return std::string(row.param.name); });

TEST(WaitCursor, HasTwoStatesAndNoNesting)
{
    ShowWaitCursor(true);
    ShowWaitCursor(true);
    ASSERT_NE(QGuiApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
    ShowWaitCursor(false);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    ShowWaitCursor(false);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST(Termination, IsRememberedBeforeTheLoopAndEndsTheRunningOne)
{
    TerminateApplication(3);
    EXPECT_EQ(RunApplication(), 3);
    QTimer::singleShot(0, qApp, [] { TerminateApplication(4); });
    EXPECT_EQ(RunApplication(), 4);
}

TEST(SystemColours, AreThoseOfTheDesktop)
{
    const QColor base = QGuiApplication::palette().color(QPalette::Active, QPalette::Base);
    const Colour expected = Colour(base.red()) | Colour(base.green()) << 8 | Colour(base.blue()) << 16;
    EXPECT_EQ(Doors().systemColour(5), expected);
    EXPECT_NE(Doors().systemColour(8), Doors().systemColour(5)) << "text on its own ground";
    for (const int code : {-1, 31, 255})
        EXPECT_EQ(Doors().systemColour(code), Colour(0x00FFFFFF)) << code;
}

TEST(RandomDoor, DrawsDifferentNumbers)
{
    EXPECT_NE(Doors().drawNumber(), Doors().drawNumber());
}

TEST(FontSubstitutes, GiveThePageFontItsLetters)
{
    InstallFontSubstitutes();
    if (IsPageFontInstalled())
        GTEST_SKIP() << "the font itself is here";
    EXPECT_EQ(QFontInfo(QFont(u"Segoe UI"_s)).family(), u"Noto Sans"_s);
}
