#include "lumivara-data/sync/RowMatch.h"

#include <algorithm>
#include <tuple>

namespace {

/// Rows and known ones that have nobody yet, by what they share.
struct Bucket
{
    std::vector<size_t> known, rows;
};

class Matcher
{
public:
    Matcher(const std::vector<KnownRow> &known, const std::vector<SyncRow> &rows)
        : m_known(known), m_rows(rows), m_found(known.size(), nullptr), m_isTaken(rows.size(), false)
    {}

    std::vector<const SyncRow *> Match()
    {
        MatchUntouched();
        MatchContents();
        MatchEdits();
        return std::move(m_found);
    }

private:
    void Pair(size_t known, size_t row)
    {
        m_found[known] = &m_rows[row];
        m_isTaken[row] = true;
    }
    template <typename KeyOf>
    std::map<SyncId, Bucket> Buckets(KeyOf keyOf) const
    {
        std::map<SyncId, Bucket> buckets;
        for (size_t i = 0; i < m_known.size(); ++i) {
            if (!m_found[i])
                buckets[keyOf(m_known[i].facts)].known.push_back(i);
        }
        for (size_t i = 0; i < m_rows.size(); ++i) {
            if (!m_isTaken[i])
                buckets[keyOf(m_rows[i].facts)].rows.push_back(i);
        }
        return buckets;
    }
    void MatchUntouched();
    void MatchContents();
    void MatchEdits();
    void MatchMostAlike(const Bucket &bucket);
    /// How much a row is like a known one, above 0 if it may be what became of it.
    int Likeness(size_t known, size_t row) const;

    const std::vector<KnownRow> &m_known;
    const std::vector<SyncRow> &m_rows;
    std::vector<const SyncRow *> m_found;
    std::vector<bool> m_isTaken;
};

void Matcher::MatchUntouched()
{
    std::map<int, size_t> byKey;
    for (size_t i = 0; i < m_rows.size(); ++i)
        byKey.emplace(m_rows[i].key, i);
    for (size_t i = 0; i < m_known.size(); ++i) {
        const auto row = byKey.find(m_known[i].key);
        if (row != byKey.end() && !m_isTaken[row->second] &&
            m_rows[row->second].facts.content == m_known[i].facts.content)
            Pair(i, row->second);
    }
}

void Matcher::MatchContents()
{
    for (const auto &[content, bucket] : Buckets([](const MarkFacts &facts) { return facts.content; })) {
        for (size_t i = 0; i < std::min(bucket.known.size(), bucket.rows.size()); ++i)
            Pair(bucket.known[i], bucket.rows[i]);
    }
}

int Matcher::Likeness(size_t known, size_t row) const
{
    const auto &before = m_known[known].facts.traits, &now = m_rows[row].facts.traits;
    int equal = 0;
    for (size_t i = 0; i < before.size(); ++i)
        equal += before[i] == now[i] ? 1 : 0;
    // A new numbering of the texts takes a mark to another one and leaves all else.
    const bool isOnItsText = before[0] == now[0];
    if (!isOnItsText && equal + 1 < static_cast<int>(before.size()))
        return 0;
    return 1 + 2 * equal + (m_known[known].key == m_rows[row].key ? 1 : 0);
}

void Matcher::MatchMostAlike(const Bucket &bucket)
{
    struct Candidate
    {
        int likeness;
        size_t known, row;
    };
    std::vector<Candidate> candidates;
    for (const size_t known : bucket.known) {
        for (const size_t row : bucket.rows) {
            if (const int likeness = Likeness(known, row); likeness > 0)
                candidates.push_back({likeness, known, row});
        }
    }
    std::sort(candidates.begin(), candidates.end(), [](const Candidate &a, const Candidate &b) {
        return std::tuple(-a.likeness, a.known, a.row) < std::tuple(-b.likeness, b.known, b.row);
    });
    for (const Candidate &candidate : candidates) {
        if (!m_found[candidate.known] && !m_isTaken[candidate.row])
            Pair(candidate.known, candidate.row);
    }
}

void Matcher::MatchEdits()
{
    constexpr size_t mostPairs = 100'000; // of one excerpt; no reader comes near
    for (const auto &[excerpt, bucket] : Buckets([](const MarkFacts &facts) { return facts.excerpt; })) {
        if (bucket.known.empty() || bucket.rows.empty())
            continue;
        if (bucket.known.size() <= mostPairs / bucket.rows.size()) {
            MatchMostAlike(bucket);
            continue;
        }
        for (size_t i = 0; i < std::min(bucket.known.size(), bucket.rows.size()); ++i) {
            if (Likeness(bucket.known[i], bucket.rows[i]) > 0)
                Pair(bucket.known[i], bucket.rows[i]);
        }
    }
}

} // namespace

std::vector<KnownRow> KnownRows(const SyncMemory &memory)
{
    std::map<std::pair<int, SyncId>, KnownRow> rows; // by key and mark
    for (const auto &[name, key] : memory.keys) {
        const auto version = memory.state.live.find(name);
        if (version == memory.state.live.end())
            continue;
        const auto &[mark, facts] = version->second;
        KnownRow &row = rows[{key, mark}];
        if (row.versions.empty() || std::tie(row.facts.time, row.facts.content) < std::tie(facts.time, facts.content))
            row.facts = facts;
        row.key = key;
        row.mark = mark;
        row.versions.push_back(name);
    }
    std::vector<KnownRow> known;
    known.reserve(rows.size());
    for (auto &[place, row] : rows)
        known.push_back(std::move(row));
    return known;
}

std::vector<const SyncRow *> MatchRows(const std::vector<KnownRow> &known, const std::vector<SyncRow> &rows)
{
    return Matcher(known, rows).Match();
}
