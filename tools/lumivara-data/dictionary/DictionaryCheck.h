#pragma once

#include "lumivara-data/files/Finding.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QSet>
#include <QString>

/// The findings of a dictionary's check.
struct DictionaryReport
{
    qsizetype wordCount = 0;
    qsizetype formCount = 0;
    /// The first few of each sort of fault in a kind, then one with the number of further ones.
    QList<Finding> findings;
    /// The number of all faults, including those not listed.
    qsizetype faultCount = 0;
};

/// Gathers the faults of one kind of dictionary. Words come in the order of the list.
class DictionaryChecker
{
public:
    explicit DictionaryChecker(int kind) : m_kind(kind) {}

    /// A word of the list: its length, its place, whether it comes twice and whether a search can reach it.
    void AddWord(const QString &word);
    /// The entry of a word from the procedure, without and with other dictionaries; null for no row or a null.
    void AddEntry(const QString &word, const QByteArray &entry, const QByteArray &joined);
    /// The existence test's answer for a word that the list has.
    void AddExistence(const QString &word, bool found);
    /// A form and one of its words, which come after the words; whether the procedure gives that word for it.
    void AddForm(const QString &form, const QString &word, bool isGiven);
    /// A procedure that failed.
    void AddFailure(const QString &procedure, const QString &message);

    /// Moves everything found into the report.
    void ReportInto(DictionaryReport &report) const;

private:
    void Fault(const char *sort, const QString &row, const QString &fault);
    QString RowName(const QString &word) const;

    int m_kind;
    qsizetype m_wordCount = 0, m_formCount = 0;
    QString m_previous;
    QByteArray m_previousKey;
    QSet<quint64> m_seen; ///< digests, which take less room than the words of a large dictionary
    QSet<quint64> m_seenTwice;
    QList<Finding> m_findings;
    QHash<QByteArray, qsizetype> m_counts;
};

/// A word is found by its own text if one of the two forms that the search makes of it is the word.
bool CanBeReached(const QString &word);

/// Describes a fault in the nesting of a text's tags; empty if there is none. Elements without a required end tag, and
/// "<" before anything but a letter or "/", are not faults.
QString TagFault(const QByteArray &html);
