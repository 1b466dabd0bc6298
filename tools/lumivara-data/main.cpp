#include "common/Console.h"
#include "common/Interrupt.h"
#include "lumivara-data/Verbs.h"

#include <QCoreApplication>

#include <clocale>
#include <string_view>

int main(int argc, char **argv)
{
    // A sealed process is ended by the one that started it, and must have no second thread when it is sealed.
    if (argc < 2 || std::string_view(argv[1]) != SealedVerb)
        NoteInterrupts();
    QCoreApplication application(argc, argv);
    // The engine refuses file names outside ASCII in a process without a UTF-8 locale. After the application object,
    // which takes the locale from the environment.
    std::setlocale(LC_CTYPE, "C.UTF-8");
    QCoreApplication::setApplicationName(QStringLiteral("lumivara-data"));
    Console console(QCoreApplication::applicationName());
    return RunTool(DataVerbs(), QCoreApplication::arguments().mid(1), console);
}
