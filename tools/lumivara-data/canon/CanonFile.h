#pragma once

#include "lumivara-data/canon/CanonCheck.h"

class Console;
class DataFile;

/// True if an open file has the two tables of a canon.
bool IsCanon(DataFile &file);

/// Every row of an open canon, its pages reduced to their facts.
CheckedCanon ReadCanon(DataFile &file, Console &console);
