#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QHash>
#include <QString>

class EntryMarkup;
class Report;

/// The entries of a StarDict dictionary, each made of fields of several types.
class StarDictEntries
{
public:
    /// `types` is what "sametypesequence" of the description tells; empty where each field bears its own type.
    explicit StarDictEntries(const QByteArray &types = {}) : m_types(types) {}

    /// The entry of a word in the line mark-up, UTF-8, from its bytes in the file of texts. Fields that no entry can
    /// hold, such as pictures, are left out.
    QByteArray Of(const QByteArray &word, const QByteArray &text);
    /// Tells how many fields were left out, by type. `fileName` is the one that the report names.
    void TellSkipped(const QString &fileName, Report &report) const;

private:
    void AddField(char type, QByteArrayView field, EntryMarkup &entry);

    QByteArray m_types;
    QHash<char, qsizetype> m_skipped;
};
