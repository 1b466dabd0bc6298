#include "lumivara-data/Verbs.h"

int ImportMarks(const QStringList &, Console &)
{
    throw ToolError(QStringLiteral("not yet"));
}
