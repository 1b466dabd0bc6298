#pragma once

#include "lumivara-data/sync/SyncPlan.h"

/// A row as the last sync left it, and what it showed.
struct KnownRow
{
    int key = 0;
    SyncId mark;
    std::vector<SyncId> versions;
    MarkFacts facts; ///< of the version that it held
};

/// Those of a file, in the order of their keys.
std::vector<KnownRow> KnownRows(const SyncMemory &memory);

/// For each known row the one that it is now, null if it is gone. No row stands twice.
std::vector<const SyncRow *> MatchRows(const std::vector<KnownRow> &known, const std::vector<SyncRow> &rows);
