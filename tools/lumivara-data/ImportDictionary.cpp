#include "lumivara-data/Verbs.h"

int ImportDictionary(const QStringList &, Console &)
{
    throw ToolError(QStringLiteral("not yet"));
}
