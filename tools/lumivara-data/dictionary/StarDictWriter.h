#pragma once

#include "lumivara-data/dictionary/DictionaryWriter.h"
#include "lumivara-data/files/RecordSorter.h"
#include "lumivara-data/files/UnfinishedFile.h"

#include <QFile>

/// A file that is written sequentially, and completely or not at all. Throws ToolError.
class WrittenFile
{
public:
    explicit WrittenFile(const QString &path);
    void Write(const QByteArray &bytes);
    quint64 Size() const { return m_size; }
    void Finish();

private:
    FileInTheMaking m_making;
    QFile m_file;
    quint64 m_size = 0;
};

/// Writes a StarDict dictionary, NAME.ifo and the files beside it. Words with equal entries become one word and its
/// forms. Entries are in the line mark-up, and the description says so. Throws ToolError.
class StarDictWriter
{
public:
    StarDictWriter(const QString &ifoPath, int kind);

    void Add(const QString &word, const QByteArray &content);
    void Finish();

private:
    QString m_base;
    int m_kind;
    WrittenFile m_texts, m_index, m_forms, m_description;
    TextNumbers m_numbers;
    RecordSorter m_words, m_formWords;
    int m_lastNumber = 0;
};
