#pragma once

#include "lumivara-data/canon/CanonCheck.h"
#include "stores/KeloraSuttaList.h"

#include <array>

class Console;
class DataFile;

/// The list of texts in the reader's file of marks. The program may have the file open. Throws ToolError or
/// DatabaseError.
namespace ClientList {

/// Vietnamese, Pāli, English.
using Names = std::array<QString, 3>;

/// What the list has of one text of collection 6, and what it should have.
struct Change
{
    int number = 0;
    bool isNew = false; ///< the list lacks the text
    Names now, wanted;
};

/// The texts of the canon in a file. Throws unless it is a canon.
QList<KeloraText> TextsOf(const QString &canon, Console &console);
/// Missing texts and differing names, in the canon's order. An English name is only compared where the list has one:
/// the program itself enters none.
QList<Change> Changes(DataFile &marks, const QList<KeloraText> &texts);
/// Makes such changes in the open file, without a commit.
void Make(DataFile &marks, const QList<Change> &changes);

/// Throws unless texts can be added to the file. Sets Firebird's lock folder to the one that the program uses for the
/// file, so call it before any other database is opened.
void Prepare(const QString &path, Console &console);
/// Adds the canon's missing texts to the list; existing ones stay. Returns the number of texts added.
qsizetype AddMissing(const QString &path, const CheckedCanon &canon);
/// Commits what was done to the open file under that path, and closes it.
void Finish(DataFile &marks, const QString &path);

} // namespace ClientList
