#pragma once

#include "lumivara-data/canon/CanonCheck.h"
#include "lumivara-data/canon/CanonGroup.h"
#include "lumivara-data/canon/TextKeys.h"
#include "lumivara-data/files/DataFile.h"
#include "lumivara-data/files/UnfinishedFile.h"

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
    QString source = {};     ///< where it comes from; empty if that is not known
};

/// Writes a canon row by row; the file gets its name, and read-only mode, when it is finished. Throws ToolError or
/// DatabaseError and leaves an existing file unchanged.
class CanonWriter
{
public:
    explicit CanonWriter(const QString &target);
    /// Writes a file that has no name to get, such as one in the private folder of another writer. Close() ends it.
    static std::unique_ptr<CanonWriter> Aside(const QString &path);
    ~CanonWriter();

    void Add(const CanonGroup &group);
    /// With `isFinished` the pages are foreign and unchanged, so they are checked.
    void Add(const CanonText &text, bool isFinished);
    /// Other names, or another key, for a text that was added, by its place.
    void Rename(qsizetype text, const LanguageNames &names);
    void Rekey(qsizetype text, int key);
    /// All rows so far, without unchecked pages.
    const CheckedCanon &Rows() const { return m_rows; }
    /// The texts so far as they are recognised later.
    QList<TextTraits> Traits() const;
    /// Sources whose texts are gone, with their keys.
    void Keep(const QList<TextTraits> &gone) { m_gone = gone; }
    /// Reports and counts what was written, reports what a check would find, and renames the file; to `stage` if that
    /// is another one, in the same folder.
    void Finish(Report &report, const QString &stage = {});
    /// Ends the file alone, of a writer aside.
    void Close();
    /// Where it is written.
    const QString &Path() const { return m_path; }

private:
    /// Makes the database file, at the first row, so that the source can start reading earlier.
    void Open();
    void Change(std::unique_ptr<Statement> &change, const QString &sql, const QList<QVariant> &values);
    void WriteSources();

    CanonWriter() = default;

    QString m_target;
    std::optional<FileInTheMaking> m_file; ///< none of a writer aside
    QString m_path;
    DataFile m_data;
    std::optional<RowWriter> m_groups;
    std::optional<RowWriter> m_texts;
    std::unique_ptr<Statement> m_rename, m_rekey;
    CheckedCanon m_rows;
    QStringList m_sources; ///< of the texts
    QList<TextTraits> m_gone;
    qsizetype m_pageCount = 0, m_englishCount = 0;
};

/// A name for the columns: one line, without control characters, at most 127 characters. If it is cut, that is reported
/// with `place`.
QString FittingName(const QString &name, const QString &place, Report &report);

/// Tells, where there are English pages, what the program makes of them.
void TellEnglish(qsizetype pages, Report &report);
