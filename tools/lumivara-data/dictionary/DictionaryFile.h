#pragma once

#include "lumivara-data/dictionary/DictionaryCheck.h"
#include "lumivara-data/sample/DictionarySource.h"

class Console;
class DataFile;

/// Makes a dictionary database at `path`, which must not exist, in read-only mode. The entries may come in any order.
/// Throws ToolError if two entries of a kind are for one word.
void WriteDictionary(const QList<DictionaryEntry> &entries, const QString &path, Console &console);

/// True if an open file has one of the three procedures of a dictionary.
bool IsDictionary(DataFile &file);

/// Proves an open dictionary through its three procedures alone, so that it may have any tables.
DictionaryReport CheckDictionary(DataFile &file, Console &console);
