#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// Where to look, and how exactly.
struct EverywhereSwitches
{
    bool pali = true; ///< pages, as the next two
    bool vietnamese = true;
    bool english = true;
    bool names = true; ///< names of texts, in all three languages
    bool marks = true; ///< title, keywords, note and excerpt of each
    bool exactCase = false;
    bool exactMarks = false; ///< off: ā is a, ñ is n, đ is d, ở is o
    bool wholeWords = false;

    bool operator==(const EverywhereSwitches &) const = default;
};

/// A word or a phrase that must be there.
struct EverywherePart
{
    QString typed;         ///< as typed, without the quotes; blanks are single
    bool isPhrase = false; ///< it was quoted
    QByteArray folded;     ///< as it stands in a FoldedText; never empty
    QString exact;         ///< ExactForm() of it, if case or marks count; else empty

    bool operator==(const EverywherePart &) const = default;
};

/// What is sought: words and "quoted phrases" of a text as typed, all of which must be in one text. Straight and curly
/// double quotes count; one that is not closed reaches to the end. A word that comes twice counts once. Letters that
/// say nothing, such as a soft hyphen or a lone accent where marks do not count, are left out. The same text always
/// gives the same query, so that two are equal if they find the same.
class EverywhereQuery
{
public:
    /// More words than these are sought as one phrase: a passage that was pasted is meant as it stands.
    static constexpr int MostParts = 16;
    /// UTF-16 units of the typed text that count; the rest is cut off.
    static constexpr int MostTyped = 1000;

    EverywhereQuery() = default;
    EverywhereQuery(const QString &typed, const EverywhereSwitches &switches);

    /// Nothing is sought: no word is left, or there is nowhere to look.
    bool IsEmpty() const;
    /// Words and phrases in the order in which they were typed: with Switches(), what a sentence that tells what is
    /// sought is made of.
    const QList<EverywherePart> &Parts() const { return m_parts; }
    const EverywhereSwitches &Switches() const { return m_switches; }

    bool operator==(const EverywhereQuery &) const = default;

private:
    QList<EverywherePart> m_parts;
    EverywhereSwitches m_switches;
};
