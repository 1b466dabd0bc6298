#pragma once

#include "lumivara-data/canon/CanonCheck.h"

/// The list of texts in the reader's file of marks. The program may have the file open. Failures are thrown as
/// ToolError or DatabaseError.
namespace ClientList {

/// Throws unless the file can take texts. Fixes the folder of the engine's locks to the one that the program uses for
/// it, so it comes before any other database is opened.
void Prepare(const QString &path);
/// Adds the canon's texts that are missing; those in the list stay as they are. The number of texts added.
qsizetype AddMissing(const QString &path, const CheckedCanon &canon);

} // namespace ClientList
