#pragma once

#include "lumivara-data/files/DataFile.h"

#include <functional>

/// Reads an open dictionary through its procedures alone, row by row, so that it may have any tables and any size.
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

private:
    DataFile &m_file;
};
