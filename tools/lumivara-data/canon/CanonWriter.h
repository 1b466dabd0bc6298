#pragma once

#include "lumivara-data/canon/CanonCheck.h"
#include "lumivara-data/canon/CanonGroup.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/files/UnfinishedFile.h"

#include <QHash>

class Report;

/// A row of KELORA_CONTENT. Null names and pages are null in the file, empty ones empty.
struct CanonText
{
    static constexpr int Pages = 4;

    int idVit = 0;
    int idVic = 0;
    std::optional<int> number;
    QString namePali;
    QString nameVietnamese;
    QString nameEnglish;
    QByteArray pages[Pages]; ///< in the order of PageColumns()
};

/// Writes a canon row by row; the file gets its name, and read-only mode, when it is finished. Throws ToolError or
/// DatabaseError and leaves an existing file unchanged.
class CanonWriter
{
public:
    explicit CanonWriter(const QString &target) : m_file(target) {}

    void Add(const CanonGroup &group);
    /// With `isFinished` the pages are foreign and unchanged, so they are checked.
    void Add(const CanonText &text, bool isFinished);
    /// All rows so far, without unchecked pages.
    const CheckedCanon &Rows() const { return m_rows; }
    /// Reports and counts what was written, reports what a check would find, and renames the file.
    void Finish(Report &report);

private:
    /// Makes the database file, at the first row, so that the source can start reading earlier.
    void Open();

    FileInTheMaking m_file;
    DataFile m_data;
    std::optional<RowWriter> m_groups;
    std::optional<RowWriter> m_texts;
    CheckedCanon m_rows;
    qsizetype m_pageCount = 0;
};

/// Keys for texts without one, derived from the text's name, so that text and marks keep the key when the collection
/// grows. All have eight digits: joined to a group's key no two are equal, and none is a group's number in the tree.
class TextKeys
{
public:
    void Claim(int key) { m_next.insert(key, After(key)); }
    int For(const QString &name);

private:
    static int After(int key);

    QHash<int, int> m_next; ///< behind a used key one that may be free, so that no run of used ones is walked twice
};

/// A name for the columns: one line, without control characters, at most 127 characters. If it is cut, that is reported
/// with `place`.
QString FittingName(const QString &name, const QString &place, Report &report);
