#pragma once

#include "lumivara-data/canon/CanonCheck.h"

class Console;
class Report;

/// Copies a canon's file after a check and puts the copy, in read-only mode, in its place. What the check finds is
/// told, and then nothing is put there. With `repair` what can be mended without loss is mended in the copy, and told:
/// running numbers, groups whose parent is missing or that are their own ancestor (put at the root), empty English
/// names (made null), pages in UTF-8 that name no charset or another one. The rows that were written, nothing if none
/// were. Throws ToolError for what is no canon.
std::optional<CheckedCanon> CopyCanon(const QString &source, const QString &target, bool repair, Report &report,
                                      Console &console);

/// A page with its charset declared as UTF-8, in place of another declaration or in front.
QByteArray WithCharset(const QByteArray &page);
