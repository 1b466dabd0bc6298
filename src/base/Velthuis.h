#pragma once

#include <QString>
#include <QStringView>

#include <functional>
#include <optional>

/// Pāli letters from the plain ones of Velthuis' scheme: "aa" is ā, ".t" is ṭ, "~n" is ñ, "\"n" is ṅ. His letters for
/// sounds that Pāli lacks, such as ".h" and ".r", make nothing.

/// What the letters before the cursor become.
struct VelthuisStep
{
    QString typed; ///< the two letters that are taken away
    QChar letter;  ///< what comes in their place

    bool operator==(const VelthuisStep &) const = default;
};

/// The step that a letter makes when it is typed behind `before`; none if the two are no pair. A capital consonant, or
/// the first of two vowels as a capital, makes a capital; "aA" is no pair. `niggahita` is asked for ".m" alone, and
/// gives the small letter.
std::optional<VelthuisStep> VelthuisStepAt(QStringView before, QChar typed, const std::function<QChar()> &niggahita);

/// The letters in which files write the niggahita.
inline constexpr char16_t Niggahitas[] = {u'ṃ', u'ṁ', u'ŋ'};

/// Counts how texts write the niggahita.
class NiggahitaCount
{
public:
    /// Counts those of a further text.
    void Add(QStringView text);
    void AddOne(QChar letter) { ++m_counts[IndexOf(letter)]; }
    /// Enough to judge by.
    bool IsClear() const;
    /// The most frequent letter, in lower case; ṃ if there is none.
    QChar Letter() const;

private:
    static constexpr size_t Kinds = std::size(Niggahitas);
    /// Of a letter that is no niggahita: Kinds.
    static size_t IndexOf(QChar letter);

    qsizetype m_counts[Kinds + 1] = {};
};
