#pragma once

#include "lumivara-data/canon/CanonCheck.h"

class Console;
class Report;

/// Checks a canon and writes its rows into a new file, in read-only mode; all else that the source can do stays behind.
/// The source is read by a sealed process. Findings are reported, and then nothing is
/// written unless only names are missing. With `repair` the copy is repaired where that loses nothing, and the repairs
/// are reported: running numbers, groups whose parent is missing or that are their own ancestor (moved to the root),
/// empty English names (set to null), UTF-8 pages that declare no charset or another one. Returns the rows written,
/// none if nothing was. Throws ToolError if the file is not a canon.
std::optional<CheckedCanon> CopyCanon(const QString &source, const QString &target, bool repair, Report &report,
                                      Console &console);

/// The same without a name to get: the file is made at `path`, such as one in a private folder, and what was written is
/// not counted.
std::optional<CheckedCanon> CopyCanonAside(const QString &source, const QString &path, bool repair, Report &report,
                                           Console &console);

/// The number of things that a repair would change.
qsizetype PossibleRepairs(const CheckedCanon &canon);

/// A page with its charset declared as UTF-8, in place of another declaration or in front.
QByteArray WithCharset(const QByteArray &page);
