#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// A StarDict dictionary made for a test or a measure, of words and texts as they are given, and its lies.
struct StarDictSample
{
    struct Word
    {
        QByteArray name;
        QByteArray text;
        qint64 offset = -1; ///< what the index tells instead of the text's own place
        qint64 size = -1;
    };
    struct Form
    {
        QByteArray name;
        quint32 word = 0; ///< from 0
    };
    enum class Packing { Plain, Chunks, Gzip };

    QList<Word> words = {};
    QList<Form> forms = {};
    QByteArray types = "m"; ///< of all texts; empty where each text has its own
    Packing packing = Packing::Plain;
    int chunkSize = 58315;
    int offsetBits = 32;
    bool hasPackedIndex = false;
    QByteArray version = "3.0.0";
    QByteArray moreDescription = {}; ///< lines

    /// Writes BASE.ifo and what stands beside it, the folder included.
    void Write(const QString &base) const;
};
