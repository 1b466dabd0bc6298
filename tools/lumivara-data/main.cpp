#include "common/Console.h"
#include "lumivara-data/Verbs.h"

#include <QCoreApplication>

#include <clocale>

constexpr Verb Verbs[] = {
    {u"build", u"make the databases from their sources", RunBuild},
    {u"check", u"tell what is wrong with a canon", RunCheck},
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    // The engine refuses file names outside ASCII in a process without a UTF-8 locale. After the application object,
    // which takes the locale from the environment.
    std::setlocale(LC_CTYPE, "C.UTF-8");
    QCoreApplication::setApplicationName(QStringLiteral("lumivara-data"));
    Console console(QCoreApplication::applicationName());
    return RunTool(Verbs, QCoreApplication::arguments().mid(1), console);
}
