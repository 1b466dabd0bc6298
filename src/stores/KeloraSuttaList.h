#pragma once

#include <QStringList>

/// The script of scInsKelora: enters the 205 texts of the Kelora into SUTTA_LIST, one insert a text, and commits. Made
/// from the canon's own list of texts when the program is built.
QStringList KeloraSuttaListScript();
