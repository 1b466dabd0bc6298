#include "base/Utf8Locale.h"
#include "common/Console.h"
#include "common/Interrupt.h"
#include "lumivara-data/Verbs.h"

#include <QCoreApplication>

#include <string_view>

int main(int argc, char **argv)
{
    ForceUtf8Environment();
    // A sealed process is ended by the one that started it, and must have no second thread when it is sealed.
    if (argc < 2 || std::string_view(argv[1]) != SealedVerb)
        NoteInterrupts();
    QCoreApplication application(argc, argv);
    SettleLocale();
    QCoreApplication::setApplicationName(QStringLiteral("lumivara-data"));
    Console console(QCoreApplication::applicationName());
    return RunTool(DataVerbs(), QCoreApplication::arguments().mid(1), console);
}
