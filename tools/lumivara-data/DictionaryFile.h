#pragma once

#include "lumivara-data/DictionarySource.h"

class Console;

/// Makes a dictionary database at `path`, which must not exist, in read-only mode.
void WriteDictionary(const QList<DictionaryEntry> &entries, const QString &path, Console &console);
