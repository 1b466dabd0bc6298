#pragma once

#include "everywhere/EverywhereQuery.h"
#include "everywhere/FoldedText.h"

#include <functional>
#include <vector>

/// The hits of a query in one text.
struct FoundHits
{
    std::vector<quint32> begins; ///< in the folded text, ascending; hits do not overlap
    std::vector<quint8> parts;   ///< which part of the query each is; empty if the query has one
    /// Stretches, first to last letter, in which every part begins; ascending, not overlapping. Empty for one part.
    std::vector<std::pair<quint32, quint32>> nearStretches;
    quint32 partsThere = 0; ///< a bit for each part that is there, also where another hit covers it

    int PartOf(qsizetype hit) const { return parts.empty() ? 0 : parts[static_cast<std::size_t>(hit)]; }
    /// Whether a hit is in one of the near stretches.
    bool IsNear(qsizetype hit) const;
    /// The first hit that is near; the number of hits if none is.
    qsizetype FirstNear() const;
};

/// Looks for a query in a folded text, in pieces if that is long. Each word and phrase is found from left to right
/// without overlapping itself. It begins and ends between letters, and where words are to be whole between words. Where
/// case or marks count, what it was folded from is compared too.
class HitFinder
{
public:
    /// Gives the source that the text was folded from; called only if case or marks count.
    using Source = std::function<QByteArrayView()>;

    /// Borrows query and text.
    HitFinder(const EverywhereQuery &query, const FoldedText &text, Markup markup, Source source);

    /// Goes on through a part of the text; false when it has been searched.
    bool Find();
    /// What has been found.
    FoundHits &Found() { return m_found; }

private:
    struct Candidate
    {
        quint32 begin;
        quint8 part;
    };

    void FindPart(quint8 part, qsizetype to);
    bool IsHit(const EverywherePart &part, qsizetype begin);
    bool IsExact(const EverywherePart &part, qsizetype begin, qsizetype end);
    void Take(const Candidate &candidate);
    void NoteNearness(const Candidate &candidate);

    const EverywhereQuery &m_query;
    const FoldedText &m_text;
    Markup m_markup;
    Source m_source;
    bool m_needsSource;
    qsizetype m_at = 0;
    qsizetype m_endOfHits = 0;
    std::vector<qsizetype> m_next; ///< for each part, where it may begin next
    std::vector<qsizetype> m_last; ///< for each part, where it began last; -1 for nowhere
    std::vector<Candidate> m_candidates;
    FoldedStretch m_stretch;
    FoundHits m_found;
};
