#pragma once

#include "lumivara-data/canon/CanonTable.h"
#include "lumivara-data/files/HtmlCleaner.h"
#include "lumivara-data/files/SourceFolder.h"

#include <QMap>
#include <QSet>

class Console;
class NamesTable;

/// A folder of pages (HTML, plain text, Markdown) with a table that describes them. A page is read when its text is
/// imported.
class CanonFolderReader
{
public:
    /// `table` may be elsewhere; by default it is canon.csv or canon.json in the folder. Throws ToolError if there is
    /// none.
    CanonFolderReader(const SourceFolder &folder, const QString &table, Report &report);

    /// True if the folder has a table of its own.
    static bool HasTable(const SourceFolder &folder);
    void WriteTo(CanonWriter &writer, TextKeys &keys, NamesTable &names, Console &console);

private:
    void WriteGroups(CanonWriter &writer);
    void PutInReadingOrder();
    void GiveKeys(TextKeys &keys);
    void GiveNumbers();
    bool WriteText(CanonWriter &writer, const CanonTableRow &row, NamesTable &names);
    QByteArray Page(const CanonTableRow &row, int page, const QString &title);

    const SourceFolder &m_folder;
    Report &m_report;
    QList<CanonTableRow> m_groups;
    QList<CanonTableRow> m_texts;
    QMap<int, int> m_parents; ///< of the groups that were written, by key
    qsizetype m_rowCount = 0, m_takenCount = 0;
    QSet<qint64> m_written; ///< group and key of the texts
    CleaningCounts m_counts;
};
