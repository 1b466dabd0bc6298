#include <QCoreApplication>

#include <gmock/gmock.h>

#include <clocale>

int main(int argc, char **argv)
{
    // The engine refuses file names outside ASCII in a process without a UTF-8 locale.
    std::setlocale(LC_CTYPE, "C.UTF-8");
    testing::InitGoogleMock(&argc, argv);
    QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
