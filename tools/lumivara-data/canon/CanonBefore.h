#pragma once

#include "lumivara-data/canon/TextKeys.h"

class Console;
class DataFile;
class Report;
class SealedStream;

/// The texts of the canon that an import is going to replace, those that it had earlier among them; read by a sealed
/// process, unless it is known that the file keeps rows alone. None if there is no such file. What can't be read is
/// told, and then no text keeps its key.
QList<TextTraits> TextsBefore(const QString &path, Report &report, Console &console);
/// Remembers of a canon that an import has made that it keeps rows alone.
void RememberMade(const QString &path);

/// What the sealed process sends for that.
void SendTraits(DataFile &file, SealedStream &stream);
