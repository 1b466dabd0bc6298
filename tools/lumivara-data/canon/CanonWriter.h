#pragma once

#include "lumivara-data/canon/CanonCheck.h"
#include "lumivara-data/canon/CanonGroup.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/files/UnfinishedFile.h"

#include <QSet>

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

/// Writes a canon row by row; the file has its name, and is in read-only mode, once it is finished. Failures are thrown
/// as ToolError or DatabaseError and leave what was there.
class CanonWriter
{
public:
    explicit CanonWriter(const QString &target) : m_file(target) {}

    void Add(const CanonGroup &group);
    /// With `isFinished` the pages come from elsewhere as they are, and are looked at as a check does.
    void Add(const CanonText &text, bool isFinished);
    /// All rows so far, pages that were not looked at left out.
    const CheckedCanon &Rows() const { return m_rows; }
    /// Tells and counts what was written, tells what a check would find, and puts the file in its place.
    void Finish(Report &report);

private:
    /// Makes the engine's file, at the first row: a source may begin to read meanwhile.
    void Open();

    FileInTheMaking m_file;
    DataFile m_data;
    std::optional<RowWriter> m_groups;
    std::optional<RowWriter> m_texts;
    CheckedCanon m_rows;
    qsizetype m_pageCount = 0;
};

/// Keys for texts that have none: made of the text's own name, so that it keeps its key, and the reader the marks, when
/// the collection grows. All have eight digits: joined to a group's key none reads like another, and none is a group's
/// number in the tree.
class TextKeys
{
public:
    void Claim(int key) { m_used.insert(key); }
    int For(const QString &name);

private:
    QSet<int> m_used;
};

/// A name as the columns take it: in one line, without control characters, at most 127 characters. `place` is told if
/// it is cut.
QString FittingName(const QString &name, const QString &place, Report &report);
