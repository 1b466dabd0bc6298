#include "lumivara-data/Console.h"
#include "lumivara-data/Verbs.h"

#include <QCoreApplication>

#include <clocale>

int main(int argc, char **argv)
{
    // The engine refuses file names outside ASCII in a process without a UTF-8 locale.
    std::setlocale(LC_CTYPE, "C.UTF-8");
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("lumivara-data"));
    Console console;
    return RunTool(QCoreApplication::arguments().mid(1), console);
}
