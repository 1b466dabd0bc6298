#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

/// One entry as the sources give it: the word, its forms that lead to the same entry, and the text in the entries' own
/// mark-up, UTF-8, lines ended by "\n".
struct SampleEntry
{
    int kind = 0;
    QString word;
    QByteArray content;
    QStringList forms;
};

/// The entries of one source text: "dictionary KIND", then for each entry "% word" and its lines. Throws ToolError with
/// `fileName` and line for a kind outside 1 to 8, a word of more than 63 characters, one that comes twice or one
/// without an entry.
QList<SampleEntry> ParseDictionary(const QString &source, const QString &fileName);

/// Adds the forms of one source text to the entries: "forms KIND…", then lines "word: form form …". A word need not be
/// in every kind named. Throws ToolError with `fileName` and line for a word that none of them has, and for a form that
/// is a word already.
void AddForms(QList<SampleEntry> &entries, const QString &source, const QString &fileName);

/// All sources of `folder` (data/dictionary), forms included.
QList<SampleEntry> ReadSampleDictionary(const QString &folder);
