#pragma once

#include "lumivara-data/files/DataFile.h"

#include <functional>

/// Reads an open dictionary through its procedures alone, row by row, so that it may have any tables and any size. Only
/// forms that a dictionary brings, which no procedure lists, are read from their table, where it is that of our files.
/// Failures are thrown as DatabaseError.
class DictionaryReader
{
public:
    explicit DictionaryReader(DataFile &file) : m_file(file) {}

    qsizetype CountWords(int kind);
    /// Each word of a kind in the order of the list. A row that says it is of another kind throws.
    void EachWord(int kind, const std::function<void(const QString &word)> &take);
    /// The same with the word's entry, null if it has none. If a word has several, the first counts.
    void EachEntry(int kind, const std::function<void(const QString &word, const QByteArray &content)> &take);

    /// True if the file has the table of forms.
    bool HasForms();
    /// Each form of a kind and one of its words, in the order of the table. None without the table.
    void EachForm(int kind, const std::function<void(const QString &form, const QString &word)> &take);
    /// The same with whether SP_GET_FORMS gives that word for the form. The file has the procedure.
    void ProveForms(int kind, const std::function<void(const QString &form, const QString &word, bool isGiven)> &take);

private:
    DataFile &m_file;
};
