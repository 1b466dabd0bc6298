#pragma once

#include "dictionary/FormFinder.h"

#include <QHash>
#include <QStringList>

#include <utility>

/// The words of a text beside one of them, in the order of reading; what punctuation parts from it is not among them.
struct Neighbours
{
    QStringList before, after;
};

/// A form whose words are sought, and where it stands.
struct SoughtForm
{
    QString form; ///< as the text has it
    Neighbours around;
    int kind = 0; ///< of the dictionary on show
};

/// What a dictionary tells about forms.
class FormSource : public WordTest
{
public:
    /// The words that the dictionary itself gives for a form in lower case, in its order; empty if it gives none.
    virtual QStringList FormsBrought(int kind, const QString &form) = 0;
    /// A word as the dictionary writes it, with its capitals; as it is given if that cannot be found out.
    virtual QString AsWritten(int kind, const QString &word) = 0;
};

/// Finds the words behind a form in pieces, so that a program can do other things between. All calls may throw what the
/// source throws; the search is over then.
class FormSearch
{
public:
    /// The source outlives this.
    explicit FormSearch(FormSource &source) : m_source(source) {}

    /// Begins anew; what was sought before is given up. Where the form itself is a listed word, only longer words that
    /// it is a syllable of are sought. Derivations are told in a language of the interface.
    void Start(const SoughtForm &sought, bool isListed, int language);
    /// Works for about that long, at least for one question, and returns whether the search is over.
    bool GoOn(int milliseconds);
    /// What was found, once it is over: words as the dictionaries write them, best first, each once.
    const QList<FoundWord> &Found() const { return m_found; }

private:
    class Piece;
    enum class Step { Brought, Around, Behind, Writing, Over };

    void TakeStep(Piece &piece);
    void TakeBrought();
    void TakeAround(Piece &piece);
    void TakeBehind(Piece &piece);
    bool WriteNext();
    void Append(const FoundWord &word);

    FormSource &m_source;
    SoughtForm m_sought;
    bool m_isListed = false;
    int m_language = 0;
    Step m_step = Step::Over;
    QList<QList<int>> m_languages; ///< kinds to look into, those of one language together
    qsizetype m_written = 0;       ///< of the words found
    qint64 m_worked = 0;           ///< milliseconds
    QHash<std::pair<int, QString>, bool> m_answers;
    qsizetype m_atOnce = 1; ///< words that are asked before the clock is looked at
    QList<FoundWord> m_found;
};

/// The kinds in which words of the dictionary on show may stand, those that read one language together: the kind
/// itself first, then its partner in the pair, then others that a reader can choose. Empty for a kind without a
/// command.
QList<QList<int>> KindsToSeek(int kind);

/// Whether two texts are one word: capitals and the composition of letters do not count.
bool IsSameWord(const QString &one, const QString &other);

/// The ways in which a word in lower case may be written with capitals, as it is first.
QStringList WithCapitals(const QString &word);
