#include "lumivara-data/Verbs.h"

int ExportCanon(const QStringList &, Console &)
{
    throw ToolError(QStringLiteral("not yet"));
}
