#include "lumivara-data/Verbs.h"

int RunForgetMe(const QStringList &, Console &)
{
    throw ToolError(QStringLiteral("not yet"));
}
