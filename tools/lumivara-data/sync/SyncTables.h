#pragma once

#include "lumivara-data/sync/SyncPlan.h"

#include <QString>

class DataFile;

/// The tables in which a file of marks remembers its last sync. The given tables know nothing of them, nor does the
/// program; a file gets them at its first sync.
namespace SyncTables {

/// Makes them where they are missing, and commits that. Throws DatabaseError, as all of these.
void Make(DataFile &file);
/// Nothing where they are missing. Rows that cannot be ours count as none.
SyncMemory Read(DataFile &file);
/// Stores in the open transaction what differs from `before`.
void Write(DataFile &file, const SyncMemory &before, const SyncMemory &after);
/// The file's own name; a file without one gets one in the open transaction.
QByteArray NameOf(DataFile &file);

} // namespace SyncTables
