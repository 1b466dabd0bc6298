#pragma once

#include "lumivara-data/canon/CanonCheck.h"

class Console;

/// The list of texts in the reader's file of marks. The program may have the file open. Throws ToolError or
/// DatabaseError.
namespace ClientList {

/// Throws unless texts can be added to the file. Sets Firebird's lock folder to the one that the program uses for the
/// file, so call it before any other database is opened.
void Prepare(const QString &path, Console &console);
/// Adds the canon's missing texts to the list; existing ones stay. Returns the number of texts added.
qsizetype AddMissing(const QString &path, const CheckedCanon &canon);

} // namespace ClientList
