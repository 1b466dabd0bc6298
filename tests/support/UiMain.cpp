#include "base/Utf8Locale.h"
#include "toolkit/browser/BrowserControl.h"
#include "toolkit/program/Fonts.h"
#include "toolkit/program/MenuKey.h"
#include "toolkit/program/QtWords.h"
#include "toolkit/program/StartUp.h"

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
    InstallMenuKey();
    ShowQtWords();
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
