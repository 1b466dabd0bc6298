#pragma once

#include "lumivara-data/canon/CanonCheck.h"
#include "lumivara-data/canon/TextKeys.h"
#include "stores/KeloraSuttaList.h"

#include <array>

class Console;
class DataFile;
class Report;

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
/// Every number of collection 6 that a text of the list or a mark has.
QSet<int> Numbers(const QString &path);

/// What a new canon brings for the list and for the marks.
struct Renewal
{
    QList<KeloraText> texts;  ///< of the canon
    QList<TextTraits> traits; ///< the same as they are recognised; may be empty
    QHash<int, int> moved;    ///< numbers that texts had before, and their new ones
    bool endsMoved = false;   ///< the list loses the former numbers
    bool keepsNames = false;  ///< of the list, where they differ
};
/// Marks that are on another number now.
struct MovedMarks
{
    int from = 0, to = 0;
    qsizetype marks = 0;
    QString name; ///< of the text
};
struct Renewed
{
    QList<Change> changes;
    QList<MovedMarks> moved;
};
/// In one transaction: moves marks to the new numbers of their texts, with them those on texts that the canon lacks and
/// that it has by another number, under their source or their names; adds the missing texts; renews names.
Renewed Renew(const QString &path, const Renewal &renewal);
/// Tells and counts that.
void Tell(const Renewed &renewed, Report &report);
/// A change, with the names now and those of the canon.
QString InWords(const Change &change);
/// The texts of a canon that is being written.
QList<KeloraText> TextsOf(const CheckedCanon &canon);

/// Commits what was done to the open file under that path, and closes it.
void Finish(DataFile &marks, const QString &path);

} // namespace ClientList
