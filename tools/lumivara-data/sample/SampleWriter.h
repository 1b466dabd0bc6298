#pragma once

#include "lumivara-data/sample/SampleCanon.h"
#include "lumivara-data/sample/SampleDictionary.h"

class Console;

/// Makes a canon at `path`, which must not exist, in read-only mode.
void WriteCanon(const SampleCanon &source, const QString &path, Console &console);

/// Makes a dictionary database at `path`, which must not exist, in read-only mode. The entries may come in any order.
/// Throws ToolError if two entries of a kind are for one word.
void WriteDictionary(const QList<SampleEntry> &entries, const QString &path, Console &console);
