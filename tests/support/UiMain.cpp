#include "toolkit/BrowserControl.h"

#include <QApplication>

#include <gmock/gmock.h>

#include <clocale>

int main(int argc, char **argv)
{
    testing::InitGoogleMock(&argc, argv);
    RegisterPageScheme();
    QApplication application(argc, argv);
    std::setlocale(LC_CTYPE, "C.UTF-8"); // the application object has taken it from the environment
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
