#pragma once

#include "lumivara-data/canon/CanonCheck.h"
#include "lumivara-data/sample/CanonSource.h"

class Console;
class DataFile;

/// Makes a canon at `path`, which must not exist, in read-only mode.
void WriteCanon(const CanonSource &source, const QString &path, Console &console);

/// True if an open file has the two tables of a canon.
bool IsCanon(DataFile &file);

/// Every row of an open canon, its pages reduced to their facts.
CheckedCanon ReadCanon(DataFile &file, Console &console);
