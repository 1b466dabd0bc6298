#include "lumivara-data/Verbs.h"

int ExportDictionary(const QStringList &, Console &)
{
    throw ToolError(QStringLiteral("not yet"));
}
