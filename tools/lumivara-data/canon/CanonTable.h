#pragma once

#include "lumivara-data/canon/CanonWriter.h"

/// A group or a text in the table of a folder.
struct CanonTableRow
{
    bool isGroup = false;
    /// Names and keys are final, and the pages are stored byte for byte.
    bool isFinished = false;
    /// Its place in the table.
    QString place;
    std::optional<int> key;
    std::optional<int> group; ///< of a group: the one above
    std::optional<int> number;
    QString pali;
    QString vietnamese;
    QString english;
    /// Files in the folder, in the order of CanonText::pages.
    QString pages[CanonText::Pages];
    QString source = {}; ///< of a text; empty for what its pages are called
};

/// The table that goes with a folder of pages, as comma separated text or JSON. In a finished row a cell in quotes with
/// nothing in it is empty and one without quotes is null; elsewhere both are null.
namespace CanonTable {

/// Rows of a table; large canons have a tenth of that.
inline constexpr qsizetype MostRows = 100'000;

inline constexpr char16_t FileName[] = u"canon.csv";
inline constexpr char16_t JsonFileName[] = u"canon.json";

/// A table's bytes as UTF-8; it is the user who names it, so it may stand anywhere. Throws ToolError.
QByteArray BytesOf(const QString &path, Report &report);
/// The valid rows; reports the others, and counts all of them if asked to. `bytes` is UTF-8. Throws ToolError if it is
/// not such a table, or has more than MostRows.
QList<CanonTableRow> Read(const QByteArray &bytes, const QString &fileName, Report &report, qsizetype *count = nullptr);

/// The header line of a comma separated table, and a row of it.
QByteArray Header();
QByteArray Line(const CanonTableRow &row);

} // namespace CanonTable
