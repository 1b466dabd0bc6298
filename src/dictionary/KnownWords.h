#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

/// Tells which words the dictionaries have.
class WordTest
{
public:
    virtual ~WordTest() = default;
    /// For each of the words, in lower case, whether the dictionary of a kind has it, in any case.
    virtual QList<bool> Have(int kind, const QStringList &words) = 0;
};

/// What the Pali dictionaries of a kind write behind their headwords, such as numbers of homonyms: learned once by
/// asking for words that every dictionary has.
class HeadwordSigns
{
public:
    const QStringList &Of(int kind, WordTest &test);

private:
    QHash<int, QStringList> m_signs;
};

/// The answers about the guesses for one form. Of several kinds that have a word the first one counts.
class KnownWords
{
public:
    struct Place
    {
        QString word; ///< as the dictionary writes it, in lower case; empty if there is no such word
        int kind = 0;
        int rank = 0; ///< of the kind in the list of kinds
    };

    KnownWords(WordTest &test, const QList<int> &kinds, HeadwordSigns *signs = nullptr)
        : m_test(test), m_kinds(kinds), m_signs(signs)
    {}

    /// Asks for those words that were not asked for yet.
    void Ask(const QStringList &words);
    /// Of a word that was asked for.
    Place Of(const QString &word) const { return m_places.value(word); }
    bool Has(const QString &word) const { return m_places.value(word).kind != 0; }

private:
    QStringList Spellings(const QString &word, int kind) const;

    WordTest &m_test;
    QList<int> m_kinds;
    HeadwordSigns *m_signs;
    QHash<QString, Place> m_places;
};
