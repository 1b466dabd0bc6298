#pragma once

#include "lumivara-data/marks/MarksReader.h"
#include "stores/KeloraSuttaList.h"

#include <QTemporaryFile>

#include <array>
#include <map>

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
    /// True if the list of an open file has no text of the Kelora.
    static bool ListLacksKelora(DataFile &file);

    /// The texts by which a mark can be found: those of the list and those that it would get.
    const KnownTexts &Texts() const { return m_known; }
    /// False if the file's columns garble a character of the mark.
    bool IsStorable(const Mark &mark) const;
    /// Sees to it that the list will have the mark's text.
    void Want(const Mark &mark);
    void Append(const MarkAtLine &mark);
    qsizetype Count() const { return m_count; }

    /// Throws ToolError, with nothing written, where that can't be done.
    void Write(Console &console);

private:
    using Names = std::array<QString, 3>; ///< Vietnamese, Pāli, English

    void WriteAll(Console &console);
    qsizetype WriteTexts(QList<std::pair<QString, QString>> &notes);
    void WriteMarks(Console &console);

    DataFile &m_file;
    QString m_path;
    QString m_source;
    QList<KeloraText> m_canonTexts;
    Report &m_report;
    KnownTexts m_known;
    bool m_storesPairs = true; ///< characters above U+FFFF
    std::map<std::pair<int, int>, Names> m_wanted;
    QTemporaryFile m_gathered;
    QDataStream m_stream;
    qsizetype m_count = 0;
};
