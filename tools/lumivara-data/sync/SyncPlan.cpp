#include "lumivara-data/sync/SyncPlan.h"

#include "lumivara-data/sync/RowMatch.h"

#include <algorithm>
#include <tuple>

namespace {

/// A row and the versions of a mark that it shows.
struct Shown
{
    const SyncRow *row;
    SyncId mark;
    std::vector<SyncId> versions;
};

/// Versions of a mark that nothing but the time tells apart; one row shows them.
using Look = std::pair<SyncId, SyncId>; ///< mark and face

class Planner
{
public:
    Planner(const SyncMemory &memory, const std::vector<SyncRow> &rows) : m_rows(rows), m_own(memory.state)
    {
        FollowRows(memory);
    }

    SyncPlan Plan(const std::vector<const SyncState *> &others)
    {
        m_plan.state = m_own;
        for (const SyncState *other : others)
            m_plan.state.Join(*other);
        NameFreshRows();
        PlaceRows();
        FindConflicts();
        return std::move(m_plan);
    }

private:
    /// What was done to the rows that the last sync knew.
    void FollowRows(const SyncMemory &memory);
    void NameFreshRows();
    void NameFreshRow(const SyncRow &row, const std::multimap<SyncId, SyncId> &elsewhere,
                      const std::set<SyncId> &standing);
    void PlaceRows();
    /// Leaves one of the rows that show a look, if there are any. Returns false if there are none.
    bool KeepOne(std::vector<const Shown *> &rows, const std::vector<SyncId> &versions);
    void FindConflicts();
    /// The one of the versions that a row holds.
    SyncId Latest(const std::vector<SyncId> &versions) const;
    bool IsEarlier(const SyncId &a, const SyncId &b) const;
    static std::map<SyncId, std::set<SyncId>> FacesOf(const SyncState &state);

    const std::vector<SyncRow> &m_rows;
    SyncState m_own; ///< without what others know
    SyncPlan m_plan;
    std::vector<Shown> m_shown;
    std::vector<const SyncRow *> m_fresh;
    std::set<SyncId> m_shownMarks;
};

bool Planner::IsEarlier(const SyncId &a, const SyncId &b) const
{
    const MarkFacts &first = m_plan.state.live.at(a).facts, &second = m_plan.state.live.at(b).facts;
    return std::tie(first.time, first.content, a) < std::tie(second.time, second.content, b);
}

SyncId Planner::Latest(const std::vector<SyncId> &versions) const
{
    return *std::max_element(versions.begin(), versions.end(),
                             [this](const SyncId &a, const SyncId &b) { return IsEarlier(a, b); });
}

void Planner::FollowRows(const SyncMemory &memory)
{
    const std::vector<KnownRow> known = KnownRows(memory);
    const std::vector<const SyncRow *> now = MatchRows(known, m_rows);
    std::set<const SyncRow *> met;
    for (size_t i = 0; i < known.size(); ++i) {
        const SyncRow *row = now[i];
        if (!row) {
            m_own.EndVersions(known[i].versions);
            continue;
        }
        met.insert(row);
        Shown shown{row, known[i].mark, known[i].versions};
        if (row->facts.content != known[i].facts.content) {
            const SyncId edit = EditOf(shown.mark, shown.versions, row->facts.content);
            m_own.EndVersions(shown.versions);
            m_own.live[edit] = {shown.mark, row->facts};
            shown.versions = {edit};
        }
        m_shownMarks.insert(shown.mark);
        m_shown.push_back(std::move(shown));
    }
    for (const SyncRow &row : m_rows) {
        if (!met.contains(&row))
            m_fresh.push_back(&row);
    }
}

void Planner::NameFreshRows()
{
    std::sort(m_fresh.begin(), m_fresh.end(), [](const SyncRow *a, const SyncRow *b) {
        return std::tie(a->facts.content, a->key) < std::tie(b->facts.content, b->key);
    });
    std::multimap<SyncId, SyncId> elsewhere; // by content: versions that no row of this file shows yet
    std::set<SyncId> standing;               // marks
    for (const auto &[name, version] : m_plan.state.live) {
        standing.insert(version.mark);
        if (!m_own.live.contains(name))
            elsewhere.emplace(version.facts.content, name);
    }
    for (const SyncRow *row : m_fresh)
        NameFreshRow(*row, elsewhere, standing);
}

void Planner::NameFreshRow(const SyncRow &row, const std::multimap<SyncId, SyncId> &elsewhere,
                           const std::set<SyncId> &standing)
{
    const auto show = [&](const SyncId &mark, const SyncId &version) {
        m_shown.push_back({&row, mark, {version}});
        m_shownMarks.insert(mark);
    };
    // A restored or copied file brings marks that others know.
    const auto [first, last] = elsewhere.equal_range(row.facts.content);
    for (auto known = first; known != last; ++known) {
        const SyncVersion &version = m_plan.state.live.at(known->second);
        if (m_own.live.emplace(known->second, version).second) {
            show(version.mark, known->second);
            return;
        }
    }
    for (int number = 0;; ++number) {
        const SyncId birth = BirthOf(row.facts.content, number);
        if (!m_plan.state.Knows(birth)) {
            const SyncVersion version{birth, row.facts};
            m_own.live.emplace(birth, version);
            m_plan.state.live.emplace(birth, version);
            show(birth, birth);
            return;
        }
        // The row is what the mark was before others edited it. Where they have deleted it, it is new: somebody has
        // brought it back.
        if (m_plan.state.past.contains(birth) && standing.contains(birth) && !m_shownMarks.contains(birth)) {
            show(birth, birth);
            return;
        }
    }
}

bool Planner::KeepOne(std::vector<const Shown *> &rows, const std::vector<SyncId> &versions)
{
    if (rows.empty())
        return false;
    const SyncId latest = Latest(versions);
    const SyncId content = m_plan.state.live.at(latest).facts.content;
    std::sort(rows.begin(), rows.end(), [&content](const Shown *a, const Shown *b) {
        const bool isOther = a->row->facts.content != content, isOtherToo = b->row->facts.content != content;
        return std::tie(isOther, a->row->key) < std::tie(isOtherToo, b->row->key);
    });
    for (size_t i = 1; i < rows.size(); ++i)
        m_plan.steps.push_back({SyncStep::Kind::Delete, rows[i]->row->key, {}, {}});
    const SyncRow &kept = *rows.front()->row;
    if (kept.facts.content == content) {
        for (const SyncId &version : versions)
            m_plan.kept[version] = kept.key;
    } else {
        m_plan.steps.push_back({SyncStep::Kind::Retime, kept.key, latest, versions});
    }
    return true;
}

void Planner::PlaceRows()
{
    const auto &live = m_plan.state.live;
    std::map<Look, std::vector<SyncId>> looks;
    for (const auto &[name, version] : live)
        looks[{version.mark, version.facts.face}].push_back(name);
    std::map<Look, std::vector<const Shown *>> rowsOf;
    std::map<SyncId, std::vector<const Shown *>> ended; // by mark: rows whose versions are all past, the last one first
    for (const Shown &shown : m_shown) {
        const auto standing = std::find_if(shown.versions.begin(), shown.versions.end(),
                                           [&live](const SyncId &version) { return live.contains(version); });
        if (standing == shown.versions.end())
            ended[shown.mark].push_back(&shown);
        else
            rowsOf[{shown.mark, live.at(*standing).facts.face}].push_back(&shown);
    }
    std::vector<SyncStep> coming;
    for (const auto &[look, versions] : looks) {
        if (!KeepOne(rowsOf[look], versions))
            coming.push_back({SyncStep::Kind::Add, 0, Latest(versions), versions});
    }
    const auto earlier = [this](const SyncStep &a, const SyncStep &b) { return IsEarlier(a.version, b.version); };
    std::sort(coming.begin(), coming.end(), earlier);
    for (auto &[mark, rows] : ended)
        std::sort(rows.begin(), rows.end(), [](const Shown *a, const Shown *b) { return a->row->key > b->row->key; });
    for (SyncStep &step : coming) {
        const SyncId &mark = live.at(step.version).mark;
        auto rows = ended.find(mark);
        if (rows != ended.end() && !rows->second.empty()) {
            step.kind = SyncStep::Kind::Change;
            step.key = rows->second.back()->row->key;
            rows->second.pop_back();
        } else if (m_own.Knows(mark) && !m_shownMarks.contains(mark)) {
            m_plan.returned.push_back(step.version);
        }
    }
    for (const auto &[mark, rows] : ended) {
        for (const Shown *shown : rows)
            m_plan.steps.push_back({SyncStep::Kind::Delete, shown->row->key, {}, {}});
    }
    // Deletions make room for keys, and new keys follow the times.
    m_plan.steps.insert(m_plan.steps.end(), coming.begin(), coming.end());
    std::stable_sort(m_plan.steps.begin(), m_plan.steps.end(), [&](const SyncStep &a, const SyncStep &b) {
        const bool isDelete = a.kind == SyncStep::Kind::Delete, isDeleteToo = b.kind == SyncStep::Kind::Delete;
        if (isDelete || isDeleteToo)
            return isDelete && (!isDeleteToo || a.key < b.key);
        return earlier(a, b);
    });
}

std::map<SyncId, std::set<SyncId>> Planner::FacesOf(const SyncState &state)
{
    std::map<SyncId, std::set<SyncId>> faces;
    for (const auto &[name, version] : state.live)
        faces[version.mark].insert(version.facts.face);
    return faces;
}

void Planner::FindConflicts()
{
    const auto before = FacesOf(m_own);
    std::map<Look, std::vector<SyncId>> looks;
    for (const auto &[name, version] : m_plan.state.live)
        looks[{version.mark, version.facts.face}].push_back(name);
    for (const auto &[mark, faces] : FacesOf(m_plan.state)) {
        const auto known = before.find(mark);
        if (faces.size() < 2 || (known != before.end() && known->second.size() >= faces.size()))
            continue;
        std::vector<SyncId> rows;
        for (const SyncId &face : faces)
            rows.push_back(Latest(looks[{mark, face}]));
        m_plan.conflicts.push_back(std::move(rows));
    }
}

} // namespace

SyncPlan PlanSync(const SyncMemory &memory, const std::vector<SyncRow> &rows,
                  const std::vector<const SyncState *> &others)
{
    return Planner(memory, rows).Plan(others);
}
