#pragma once

#include "lumivara-data/marks/MarksReader.h"
#include "lumivara-data/marks/TextsOfMarks.h"

#include <QTemporaryFile>

class Console;
class DataFile;

/// Marks on their way into a file that the program may have open, too: first gathered outside, then written in one
/// short transaction, all or none.
class MarksStore
{
public:
    /// The file is open and outlives this; `source` is the name that messages give to where the marks are from. With
    /// `canonTexts` a list without a text of the Kelora gets all of them.
    MarksStore(DataFile &file, const QString &path, const QString &source, const QList<KeloraText> &canonTexts,
               Report &report);
    /// The texts by which a mark can be found: those of the list and those that it would get.
    const KnownTexts &Texts() const { return m_known; }
    /// False if the file's columns garble a character of the mark.
    bool IsStorable(const Mark &mark) const;
    /// Sees to it that the list will have the mark's text.
    void Want(const Mark &mark) { m_wanted.Want(mark); }
    void Append(const MarkAtLine &mark);
    qsizetype Count() const { return m_count; }

    /// Throws ToolError, with nothing written, where that can't be done.
    void Write(Console &console);

private:
    void WriteAll(Console &console);
    void WriteMarks(Console &console);

    DataFile &m_file;
    QString m_path;
    QString m_source;
    Report &m_report;
    KnownTexts m_known;
    bool m_storesPairs;
    TextsOfMarks m_wanted;
    QTemporaryFile m_gathered;
    QDataStream m_stream;
    qsizetype m_count = 0;
};
