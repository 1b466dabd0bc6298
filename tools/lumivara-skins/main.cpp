#include "base/Utf8Locale.h"
#include "common/Console.h"
#include "lumivara-skins/Verbs.h"

#include <QCoreApplication>

constexpr Verb Verbs[] = {
    {u"pack", u"make the skin file of a folder of skins", RunPack},
    {u"check", u"tell what is wrong with a skin file", RunCheckSkins},
    {u"list", u"list the skins of a file", RunListSkins},
};

int main(int argc, char **argv)
{
    ForceUtf8Environment();
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("lumivara-skins"));
    Console console(QCoreApplication::applicationName());
    return RunTool(Verbs, QCoreApplication::arguments().mid(1), console);
}
