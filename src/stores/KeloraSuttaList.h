#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class TpFIBDatabase;
class TpFIBTransaction;

/// A text of the Kelora in the list of texts. Null where the canon has no name.
struct KeloraText
{
    int number;
    QString vietnamese, pali, english;
};

/// The texts of an open canon in the order of its table, each number once. Names are cut to what the list can hold.
/// Throws DatabaseError.
QList<KeloraText> KeloraTexts(TpFIBDatabase &canon, TpFIBTransaction &transaction);

/// The script of scInsKelora: inserts the texts into SUTTA_LIST, without English names, one statement each, and
/// commits.
QStringList KeloraSuttaListScript(const QList<KeloraText> &texts);
