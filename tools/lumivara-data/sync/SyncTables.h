#pragma once

#include "lumivara-data/sync/SyncPlan.h"

#include <QString>

class DataFile;

/// The tables in which a file of marks remembers its last sync. The given tables know nothing of them, nor does the
/// program; a file gets them at its first sync.
namespace SyncTables {

/// Makes them where they are missing, commits that, and gives the file's own name. Throws DatabaseError, as all of
/// these.
QByteArray Make(DataFile &file);
/// Nothing where they are missing. Rows that cannot be ours count as none.
SyncMemory Read(DataFile &file);
/// Stores in the open transaction what differs from `before`.
void Write(DataFile &file, const SyncMemory &before, const SyncMemory &after);

} // namespace SyncTables
