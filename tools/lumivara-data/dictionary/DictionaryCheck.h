#pragma once

#include "lumivara-data/files/Finding.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QSet>
#include <QString>

/// What a check of a dictionary found.
struct DictionaryReport
{
    qsizetype wordCount = 0;
    /// Of each sort of fault in a kind the first few, then one that tells how many more there are.
    QList<Finding> findings;
    /// All faults, those not told one by one included.
    qsizetype faultCount = 0;
};

/// Gathers the faults of one kind of dictionary. Words come in the order of the list.
class DictionaryChecker
{
public:
    explicit DictionaryChecker(int kind) : m_kind(kind) {}

    /// A word of the list: its length, its place, whether it comes twice and whether a search can reach it.
    void AddWord(const QString &word);
    /// The entry of a word, as the procedure gives it without and with other dictionaries; null for no row or a null.
    void AddEntry(const QString &word, const QByteArray &entry, const QByteArray &joined);
    /// The existence test's answer for a word that the list has.
    void AddExistence(const QString &word, bool found);
    /// A procedure that failed.
    void AddFailure(const QString &procedure, const QString &message);

    /// Moves everything found into the report.
    void ReportInto(DictionaryReport &report) const;

private:
    void Fault(const char *sort, const QString &row, const QString &fault);
    QString RowName(const QString &word) const;

    int m_kind;
    qsizetype m_wordCount = 0;
    QString m_previous;
    QByteArray m_previousKey;
    QSet<quint64> m_seen; ///< digests, which take less room than the words of a large dictionary
    QSet<quint64> m_seenTwice;
    QList<Finding> m_findings;
    QHash<QByteArray, qsizetype> m_counts;
};

/// A word is found by its own text if one of the two forms that the search makes of it is the word.
bool CanBeReached(const QString &word);

/// What is wrong with the nesting of the tags in a text, in words; empty if nothing is. Elements that need no end tag
/// and "<" before anything but a letter or "/" are no fault.
QString TagFault(const QByteArray &html);
