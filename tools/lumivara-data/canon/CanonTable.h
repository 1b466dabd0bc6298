#pragma once

#include "lumivara-data/canon/CanonWriter.h"

/// A group or a text as the table of a folder names it.
struct CanonTableRow
{
    bool isGroup = false;
    /// Its names and keys stand as they are to be, and its pages are stored byte for byte.
    bool isFinished = false;
    /// Where it stands in the table.
    QString place;
    std::optional<int> key;
    std::optional<int> group; ///< of a group: the one above
    std::optional<int> number;
    QString pali;
    QString vietnamese;
    QString english;
    /// Files in the folder, in the order of CanonText::pages.
    QString pages[CanonText::Pages];
};

/// The table that goes with a folder of pages, as comma separated text or JSON. In a finished row a cell in quotes with
/// nothing in it is empty and one without quotes is null; elsewhere both are null.
namespace CanonTable {

inline constexpr char16_t FileName[] = u"canon.csv";
inline constexpr char16_t JsonFileName[] = u"canon.json";

/// The rows that can be understood; the others are told. `bytes` is UTF-8. Throws ToolError for what is no such table.
QList<CanonTableRow> Read(const QByteArray &bytes, const QString &fileName, Report &report);

/// What a comma separated table begins with, and a row of it.
QByteArray Header();
QByteArray Line(const CanonTableRow &row);

} // namespace CanonTable
