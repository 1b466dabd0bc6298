#pragma once

#include "stores/KeloraSuttaList.h"

#include <functional>

class Console;
class DataFile;

/// Works on a file of marks that no other import or sync is at; the program may have it open. `work` gets the file and
/// its path without links, and the texts for a list that has none of the Kelora, as the program would enter them at the
/// first marking: those of `canon`, or of KELORA.FDB beside the tool where that is empty. Returns the path. Throws
/// ToolError, also in place of DatabaseError.
QString
ChangeMarks(const QString &given, const QString &canon, Console &console,
            const std::function<void(DataFile &file, const QString &path, const QList<KeloraText> &texts)> &work);
