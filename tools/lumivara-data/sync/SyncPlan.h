#pragma once

#include "lumivara-data/sync/SyncState.h"

/// A mark that stands in a file of marks.
struct SyncRow
{
    int key = 0;
    MarkFacts facts;
};

/// What a file of marks remembers of its last sync.
struct SyncMemory
{
    SyncState state;
    std::map<SyncId, int> keys; ///< of each version that stands: the row that shows it
};

/// One change of a row.
struct SyncStep
{
    enum class Kind {
        Delete,
        Add,
        Change, ///< the row gets all that the version holds
        Retime  ///< the row gets the version's time, all else is the same
    };
    Kind kind = Kind::Add;
    int key = 0;                  ///< of the row; 0 for Add
    SyncId version;               ///< what the row holds then
    std::vector<SyncId> versions; ///< all that the row shows then
};

/// What a sync has to do.
struct SyncPlan
{
    SyncState state;            ///< all that is known
    std::map<SyncId, int> kept; ///< by the versions that stand: rows that stay as they are
    std::vector<SyncStep> steps;
    /// Marks that were edited on two machines and from now on stand here more than once: what each of the rows holds.
    std::vector<std::vector<SyncId>> conflicts;
    /// Marks that were deleted here, and edited elsewhere by who did not know.
    std::vector<SyncId> returned;
};

/// Finds out what was done to the rows since the last sync, joins that with what others know, and plans how the rows
/// come to it. Rows have different keys. Equal input gives an equal plan.
///
/// A row that was edited has got a new key, and keys are used again. So a mark is known by its excerpt, which no edit
/// changes, and where several have the same by what else is as it was.
SyncPlan PlanSync(const SyncMemory &memory, const std::vector<SyncRow> &rows,
                  const std::vector<const SyncState *> &others);
