#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// A text of the Kelora as the list of texts has it, without an English name.
struct KeloraText
{
    int number;
    QString vietnamese, pali;
};

/// The 205 texts of the Kelora.
QList<KeloraText> KeloraTexts();

/// The script of scInsKelora: enters the 205 texts of the Kelora into SUTTA_LIST, one insert a text, and commits. Made
/// from the canon's own list of texts when the program is built.
QStringList KeloraSuttaListScript();
