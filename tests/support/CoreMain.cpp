#include "stores/engine/Database.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <clocale>

int main(int argc, char **argv)
{
    testing::InitGoogleMock(&argc, argv);
    QCoreApplication application(argc, argv);
    // The engine refuses file names outside ASCII in a process without a UTF-8 locale, and the application object has
    // just taken the locale from the environment.
    std::setlocale(LC_CTYPE, "C.UTF-8");
    // Each test has its own folder of databases; the engine keeps its lock folder for the whole process.
    const QTemporaryDir locks;
    TpFIBDatabase::SetLockFolder(locks.filePath(QStringLiteral("lock")));
    return RUN_ALL_TESTS();
}
