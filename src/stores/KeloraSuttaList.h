#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// A text of the Kelora in the list of texts, without an English name.
struct KeloraText
{
    int number;
    QString vietnamese, pali;
};

/// The 205 texts of the Kelora.
QList<KeloraText> KeloraTexts();

/// The script of scInsKelora: inserts the 205 texts of the Kelora into SUTTA_LIST, one statement each, and commits.
/// Generated from the canon's list of texts when the program is built.
QStringList KeloraSuttaListScript();
