#pragma once

#include "lumivara-data/dictionary/DictionaryCheck.h"

class Console;
class DataFile;

/// True if an open file has one of the three procedures of a dictionary.
bool IsDictionary(DataFile &file);

/// Checks an open dictionary through its three procedures alone, so that it may have any tables.
DictionaryReport CheckDictionary(DataFile &file, Console &console);
