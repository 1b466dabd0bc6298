#include "everywhere/HitFinder.h"

#include "everywhere/EverywhereHit.h"
#include "everywhere/Folding.h"
#include "everywhere/Utf8.h"

#include <algorithm>
#include <cstring>

namespace {

// Of the text, in bytes; a piece takes a few milliseconds at most. Comparing with the source takes more.
constexpr qsizetype FoldedPiece = 256 * 1024;
constexpr qsizetype ExactPiece = 16 * 1024;

bool EndsBetweenLetters(QByteArrayView text, qsizetype at)
{
    return at == text.size() || !ContinuesLetter(Utf8::At(text, at).code);
}

bool IsInsideWord(QByteArrayView text, qsizetype at)
{
    return at > 0 && at < text.size() && IsWordLetter(Utf8::Before(text, at).code) &&
           IsWordLetter(Utf8::At(text, at).code);
}

} // namespace

bool FoundHits::IsNear(qsizetype hit) const
{
    if (parts.empty())
        return true;
    const quint32 begin = begins[static_cast<std::size_t>(hit)];
    const auto after = std::upper_bound(nearStretches.begin(), nearStretches.end(), begin,
                                        [](quint32 offset, const auto &stretch) { return offset < stretch.first; });
    return after != nearStretches.begin() && begin <= std::prev(after)->second;
}

qsizetype FoundHits::FirstNear() const
{
    if (parts.empty())
        return 0;
    if (nearStretches.empty())
        return std::ssize(begins);
    const qsizetype first =
        std::lower_bound(begins.begin(), begins.end(), nearStretches.front().first) - begins.begin();
    return first < std::ssize(begins) && IsNear(first) ? first : std::ssize(begins);
}

HitFinder::HitFinder(const EverywhereQuery &query, const FoldedText &text, Markup markup, Source source)
    : m_query(query), m_text(text), m_markup(markup), m_source(std::move(source)),
      m_needsSource(query.Switches().exactCase || query.Switches().exactMarks),
      m_next(static_cast<std::size_t>(query.Parts().size()), 0),
      m_last(static_cast<std::size_t>(query.Parts().size()), -1)
{}

bool HitFinder::Find()
{
    m_at = std::min(m_at + (m_needsSource ? ExactPiece : FoldedPiece), m_text.bytes.size());
    m_candidates.clear();
    for (qsizetype part = 0; part < m_query.Parts().size(); ++part)
        FindPart(static_cast<quint8>(part), m_at);
    if (m_query.Parts().size() > 1) {
        const auto sizeOf = [&](const Candidate &candidate) { return m_query.Parts()[candidate.part].folded.size(); };
        std::stable_sort(m_candidates.begin(), m_candidates.end(), [&](const Candidate &left, const Candidate &right) {
            return left.begin != right.begin ? left.begin < right.begin : sizeOf(left) > sizeOf(right);
        });
    }
    for (const Candidate &candidate : m_candidates)
        Take(candidate);
    return m_at < m_text.bytes.size();
}

/// Collects the places before `to` at which a part begins.
void HitFinder::FindPart(quint8 part, qsizetype to)
{
    const EverywherePart &sought = m_query.Parts()[part];
    const qsizetype size = sought.folded.size();
    qsizetype &next = m_next[part];
    const char *const bytes = m_text.bytes.constData();
    const qsizetype end = std::min(to - 1 + size, m_text.bytes.size());
    while (next < to) {
        const void *found = end - next < size ? nullptr
                                              : memmem(bytes + next, static_cast<std::size_t>(end - next),
                                                       sought.folded.constData(), static_cast<std::size_t>(size));
        if (!found) {
            next = to;
            break;
        }
        const qsizetype begin = static_cast<const char *>(found) - bytes;
        const bool isHit = IsHit(sought, begin);
        if (isHit)
            m_candidates.push_back({static_cast<quint32>(begin), part});
        next = begin + (isHit ? size : 1);
    }
}

bool HitFinder::IsHit(const EverywherePart &part, qsizetype begin)
{
    const QByteArrayView text = m_text.bytes;
    const qsizetype end = begin + part.folded.size();
    if (!EndsBetweenLetters(text, begin) || !EndsBetweenLetters(text, end))
        return false;
    if (m_query.Switches().wholeWords && (IsInsideWord(text, begin) || IsInsideWord(text, end)))
        return false;
    return !m_needsSource || IsExact(part, begin, end);
}

bool HitFinder::IsExact(const EverywherePart &part, qsizetype begin, qsizetype end)
{
    if (!m_stretch.Holds(begin, end))
        m_stretch.Read(m_source(), m_markup, *m_text.places, begin, end);
    const EverywhereSwitches &switches = m_query.Switches();
    const QString text = m_stretch.Text(m_stretch.IndexAt(begin), m_stretch.IndexAt(end));
    return ExactForm(text, switches.exactCase, switches.exactMarks) == part.exact;
}

void HitFinder::Take(const Candidate &candidate)
{
    m_found.partsThere |= 1U << candidate.part;
    const bool isOneOfSeveral = m_query.Parts().size() > 1;
    if (isOneOfSeveral)
        NoteNearness(candidate);
    if (candidate.begin < m_endOfHits)
        return;
    m_endOfHits = candidate.begin + m_query.Parts()[candidate.part].folded.size();
    m_found.begins.push_back(candidate.begin);
    if (isOneOfSeveral)
        m_found.parts.push_back(candidate.part);
}

void HitFinder::NoteNearness(const Candidate &candidate)
{
    m_last[candidate.part] = candidate.begin;
    const qsizetype first = *std::min_element(m_last.begin(), m_last.end());
    if (first < 0 || candidate.begin - first > NearLetters)
        return;
    auto &stretches = m_found.nearStretches;
    if (!stretches.empty() && first <= stretches.back().second)
        stretches.back().second = candidate.begin;
    else
        stretches.emplace_back(static_cast<quint32>(first), candidate.begin);
}
