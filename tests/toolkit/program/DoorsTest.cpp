#include "toolkit/program/Doors.h"

#include "toolkit/program/DesktopLook.h"

#include <QApplication>
#include <QDBusVariant>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

TEST(MessageBoxDoor, ShowsPlainTextAndTellsTheAnswer)
{
    for (const auto &[buttons, key, answer] : {std::tuple(BoxButtons::Ok, Qt::Key_Return, true),
                                               {BoxButtons::YesNo, Qt::Key_Return, true},
                                               {BoxButtons::YesNo, Qt::Key_Escape, false}}) {
        QString seen;
        QTimer::singleShot(0, qApp, [&, key = key] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            seen = box->objectName() + u'|' + box->windowTitle() + u'|' + box->text();
            EXPECT_EQ(box->textFormat(), Qt::PlainText);
            QTest::keyClick(box, key);
        });
        EXPECT_EQ(Doors().messageBox(u"Title"_s, u"<b>one</b>\rtwo\r\nthree"_s, buttons, BoxIcon::Error), answer);
        EXPECT_EQ(seen, u"msgBox|Title|<b>one</b>\ntwo\nthree"_s);
    }
}

TEST(SystemColours, AreThoseOfTheDesktop)
{
    const QColor base = QGuiApplication::palette().color(QPalette::Active, QPalette::Base);
    EXPECT_EQ(Doors().systemColour(5), Colour(base.red() | base.green() << 8 | base.blue() << 16));
    EXPECT_NE(Doors().systemColour(8), Doors().systemColour(5)) << "text on its own ground";
    EXPECT_EQ(Doors().systemColour(31), Colour(0x00FFFFFF));
}

TEST(DesktopLook, IsToldByANumberHoweverDeepItIsWrapped)
{
    const auto wrapped = [](const QVariant &value) { return QVariant::fromValue(QDBusVariant(value)); };
    for (const auto &[value, isDark] : {std::pair(QVariant(1U), std::optional(true)),
                                        {wrapped(wrapped(2U)), std::optional(false)},
                                        {wrapped(0U), std::nullopt},
                                        {wrapped(7U), std::nullopt},
                                        {wrapped(u"dark"_s), std::nullopt},
                                        {QVariant(), std::nullopt}})
        EXPECT_EQ(IsDarkByColourScheme(value), isDark) << qPrintable(value.toString());
}
