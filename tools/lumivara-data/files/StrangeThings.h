#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <utility>

class DataFile;

/// What an open file holds beside the rows of some tables, each with its known columns: "table X", "column Y of T",
/// "procedure P", "function F", "trigger G". Throws DatabaseError.
QStringList StrangeThings(DataFile &file, const QList<std::pair<QString, QStringList>> &known);
