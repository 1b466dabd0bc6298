#include "toolkit/BrowserControl.h"
#include "toolkit/Fonts.h"
#include "toolkit/StartUp.h"

#include <QApplication>

#include <gmock/gmock.h>

int main(int argc, char **argv)
{
    PrepareProcess();
    testing::InitGoogleMock(&argc, argv);
    RegisterPageScheme();
    QApplication application(argc, argv);
    SettleLocale();
    InstallFontSubstitutes();
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
