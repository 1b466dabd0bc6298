#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// One entry as the sources give it: the word and the text in the entries' own mark-up, UTF-8, lines ended by "\n".
struct DictionaryEntry
{
    int kind = 0;
    QString word;
    QByteArray content;
};

/// The entries of one source text: "dictionary KIND", then for each entry "% word" and its lines. Throws ToolError with
/// `fileName` and line for a kind outside 1 to 8, a word of more than 63 characters or one that comes twice.
QList<DictionaryEntry> ParseDictionary(const QString &source, const QString &fileName);

/// All sources of `folder` (data/dictionary), in the order of their kinds and of the dictionary.
QList<DictionaryEntry> ReadDictionarySources(const QString &folder);
