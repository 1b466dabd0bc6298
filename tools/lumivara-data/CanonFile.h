#pragma once

#include "lumivara-data/CanonCheck.h"
#include "lumivara-data/CanonSource.h"

class Console;

/// Makes a canon at `path`, which must not exist, in read-only mode.
void WriteCanon(const CanonSource &source, const QString &path, Console &console);

/// Every row of a canon, its pages reduced to their facts. Opens the file itself; throws ToolError if it holds no
/// canon, DatabaseError if it is no database.
CheckedCanon ReadCanon(const QString &path, Console &console);
