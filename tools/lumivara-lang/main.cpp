#include "base/Utf8Locale.h"
#include "common/Console.h"
#include "lumivara-lang/Verbs.h"

#include <QCoreApplication>

constexpr Verb Verbs[] = {
    {u"number", u"give each text of the windows its number and write their tables", RunNumber},
    {u"list", u"list the texts of the windows", RunList},
    {u"check", u"tell what is wrong with a language file", RunCheckLanguage},
    {u"fresh", u"write a new language file for a translator", RunFresh},
    {u"verify", u"tell whether tables, numbers and windows agree", RunVerify},
};

int main(int argc, char **argv)
{
    ForceUtf8Environment();
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("lumivara-lang"));
    Console console(QCoreApplication::applicationName());
    return RunTool(Verbs, QCoreApplication::arguments().mid(1), console);
}
