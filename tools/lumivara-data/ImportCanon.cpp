#include "lumivara-data/Verbs.h"

int ImportCanon(const QStringList &, Console &)
{
    throw ToolError(QStringLiteral("not yet"));
}
