#include "toolkit/Doors.h"

#include "toolkit/Guard.h"

#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

TEST(MessageBoxDoor, ShowsPlainTextAndTellsTheAnswer)
{
    const struct
    {
        BoxButtons buttons;
        Qt::Key key;
        bool answer;
    } rows[]{{BoxButtons::Ok, Qt::Key_Return, true},
             {BoxButtons::YesNo, Qt::Key_Return, true},
             {BoxButtons::YesNo, Qt::Key_Escape, false}};
    for (const auto &row : rows) {
        QStringList seen;
        QTimer::singleShot(0, qApp, [&] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            seen = {box->objectName(), box->windowTitle(), box->text(), QString::number(box->textFormat())};
            QTest::keyClick(box, row.key);
        });
        EXPECT_EQ(Doors().messageBox(u"Title"_s, u"<b>one</b>\rtwo\r\nthree"_s, row.buttons, BoxIcon::Error),
                  row.answer);
        EXPECT_EQ(seen,
                  (QStringList{u"msgBox"_s, u"Title"_s, u"<b>one</b>\ntwo\nthree"_s, QString::number(Qt::PlainText)}));
    }
}

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
