#pragma once

#include "dictionary/KnownWords.h"

/// A word of a dictionary that a form comes of.
struct FoundWord
{
    QString word; ///< as the existence test knows it, in lower case
    int kind = 0;
    QString derivation; ///< "dhammānaṁ → dhamma, genitive plural", "kāyasaṁsaggaṁ → kāya + saṁsagga"
    bool operator==(const FoundWord &) const = default;
};

/// Finds the dictionary words behind the forms of a text. It knows grammar and no words: which of its guesses are words
/// it asks the dictionaries. The language of a kind decides which grammar is used. Bounded in time for any text.
class FormFinder
{
public:
    static constexpr qsizetype MostWords = 6;
    /// Letters of the longest form that is looked at.
    static constexpr qsizetype LongestForm = 80;
    /// Syllables of the longest word of several that is looked for.
    static constexpr qsizetype MostSyllables = 5;

    /// The test outlives this. The derivations are told in the interface's language given.
    explicit FormFinder(WordTest &test, int language = 1) : m_test(test), m_language(language) {}

    /// The words behind a form as it stands in a text, best first, each once: whole words before pieces, frequent
    /// endings before rare, and what is equally likely by the order of the kinds. Empty if there is none. Throws what
    /// the test throws.
    QList<FoundWord> WordsBehind(const QString &form, const QList<int> &kinds);

    /// The same for a syllable of a language that writes its words in several: the longest run of syllables around it
    /// that is a word comes first.
    QList<FoundWord> WordsAround(const QStringList &syllables, qsizetype index, const QList<int> &kinds);

private:
    WordTest &m_test;
    int m_language;
    HeadwordSigns m_signs;
};

/// All runs of at most MostSyllables syllables around one of them, longest first, in lower case and parted by blanks.
/// Empty for an index outside of the list.
QStringList SyllableRuns(const QStringList &syllables, qsizetype index);

/// The kinds that read the same language as a kind, itself first; itself alone if no other does.
QList<int> KindsOfSameLanguage(int kind);
