#pragma once

#include "lumivara-data/marks/MarksForms.h"
#include "stores/KeloraSuttaList.h"

#include <QList>

#include <array>
#include <map>
#include <utility>

class DataFile;
class DatabaseError;

/// The texts that marks on their way into a file need in its list: without its text a mark is never shown.
class TextsOfMarks
{
public:
    /// The file is open and outlives this; `source` is the name that notes give to where the marks are from. With
    /// `canonTexts` a list without a text of the Kelora gets all of them.
    TextsOfMarks(DataFile &file, const QString &path, const QString &source, const QList<KeloraText> &canonTexts);
    /// True if the list of an open file has no text of the Kelora.
    static bool ListLacksKelora(DataFile &file);

    /// Sees to it that the list will have the mark's text.
    void Want(const Mark &mark);
    /// Writes what the list lacks into the open transaction. Gives the number of texts, and place and words of what is
    /// to be told once that is committed. Throws DatabaseError.
    qsizetype Write(QList<std::pair<QString, QString>> &notes);

private:
    using Names = std::array<QString, 3>; ///< Vietnamese, Pāli, English

    static bool HasNone(const Names &names);

    DataFile &m_file;
    QString m_path;
    QString m_source;
    QList<KeloraText> m_canonTexts;
    std::map<std::pair<int, int>, Names> m_wanted;
};

/// True if the text columns of an open file of marks keep characters above U+FFFF.
bool StoresPairs(DataFile &file);
/// True if another copy of the program took the key, or is at that row: a moment later it will do.
bool IsClashOfCopies(const DatabaseError &error);
