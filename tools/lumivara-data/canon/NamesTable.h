#pragma once

#include "lumivara-data/canon/Language.h"

#include <QHash>

class Report;

/// Names that the user gives to texts and groups, in a comma separated table with the columns id, pali, vietnamese and
/// english. The id of a text is its source, that of a group its folder, or the folders on the way to it.
class NamesTable
{
public:
    /// One without names.
    NamesTable() = default;
    /// Throws ToolError if the file can't be read or is no such table; names that are too long are cut, and that is
    /// told.
    NamesTable(const QString &path, Report &report);

    bool Has(const QString &id) const { return m_names.contains(id); }
    /// Puts the table's names in the place of others; those that it leaves empty stay.
    void Apply(const QString &id, LanguageNames &names);
    /// Tells the ids that nothing had.
    void TellUnused(Report &report) const;

private:
    struct Row
    {
        LanguageNames names;
        QString place;
        bool isUsed = false;
    };
    QHash<QString, Row> m_names;
};
