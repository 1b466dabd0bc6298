#include "toolkit/BrowserControl.h"

#include <QApplication>

#include <gmock/gmock.h>

#include <clocale>

int main(int argc, char **argv)
{
    std::setlocale(LC_CTYPE, "C.UTF-8");
    testing::InitGoogleMock(&argc, argv);
    RegisterPageScheme();
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
