#include "lumivara-data/sync/SyncPlan.h"
#include "lumivara-data/marks/MarksForms.h"

#include <gmock/gmock.h>

#include <memory>
#include <random>

using testing::IsEmpty;

namespace {

/// What a machine has put into the folder.
struct Carried
{
    SyncState state;
    std::map<SyncId, Mark> marks;
    std::set<int> known; ///< changes
};

/// What a reader has done, as somebody would tell it who has watched all machines at once.
struct Watcher
{
    struct Change
    {
        std::set<int> replaced;
        std::optional<Mark> mark; ///< none for a deletion
    };
    std::vector<Change> changes;

    int Note(const std::set<int> &replaced, const std::optional<Mark> &mark = {})
    {
        changes.push_back({replaced, mark});
        return static_cast<int>(changes.size()) - 1;
    }
    /// The changes that stand among those that are known, by what they look like: an excerpt is one mark's alone.
    std::map<SyncId, std::set<int>> Standing(const std::set<int> &known) const
    {
        std::set<int> ended;
        for (const int change : known)
            ended.insert(changes[change].replaced.begin(), changes[change].replaced.end());
        std::map<SyncId, std::set<int>> standing;
        for (const int change : known) {
            if (changes[change].mark && !ended.contains(change))
                standing[FactsOf(*changes[change].mark).face].insert(change);
        }
        return standing;
    }
};

/// A machine: a file of marks under the program's rule for keys, what it remembers, and its copy of the folder.
class Machine
{
public:
    Machine(int number, Watcher &watcher) : m_number(number), m_watcher(&watcher), m_clock(1000 * (9 - number)) {}

    /// A new mark, as a marking makes it.
    void Add(const QByteArray &excerpt, int title)
    {
        Mark mark;
        mark.collection = 6;
        mark.text = 1101;
        mark.excerpt = excerpt;
        mark.title = QString::number(title);
        Post(mark, {});
    }
    void Edit(int row, int title, int note)
    {
        auto [mark, events] = *Take(row);
        mark.title = QString::number(title);
        mark.note = QString::number(note);
        Post(mark, events);
    }
    void Delete(int row) { m_known.insert(m_watcher->Note(Take(row)->second)); }
    int RowCount() const { return static_cast<int>(m_rows.size()); }

    /// `isKilled`: after the file's commit, before the folder gets it. Returns the plan.
    SyncPlan Sync(bool isKilled = false)
    {
        std::vector<SyncRow> rows;
        for (const auto &[key, row] : m_rows)
            rows.push_back({key, FactsOf(row.first)});
        std::vector<const SyncState *> others;
        for (const auto &[number, file] : folder) {
            others.push_back(&file->state);
            m_known.insert(file->known.begin(), file->known.end());
        }
        const SyncPlan plan = PlanSync(m_memory, rows, others);
        Follow(plan);
        if (isWatched)
            CompareWithWatcher();
        if (!isKilled)
            Write();
        return plan;
    }
    std::set<QByteArray> Excerpts() const
    {
        std::set<QByteArray> excerpts;
        for (const auto &[key, row] : m_rows)
            excerpts.insert(row.first.excerpt);
        return excerpts;
    }
    std::set<SyncId> Contents() const
    {
        std::set<SyncId> contents;
        for (const auto &[key, row] : m_rows)
            contents.insert(FactsOf(row.first).content);
        return contents;
    }
    /// As another machine, with a copy of the file.
    Machine CopyAs(int number) const
    {
        Machine copy(*this);
        copy.m_number = number;
        return copy;
    }
    /// A restored file has the rows alone.
    void Forget() { m_memory = {}; }

    std::map<int, std::shared_ptr<const Carried>> folder;
    bool isWatched = true; ///< a watcher does not follow what is copied or restored

private:
    using Row = std::pair<Mark, std::set<int>>; ///< and the changes that it shows

    /// Nobody may tell the file from what its changes and those that it has met come to.
    void CompareWithWatcher()
    {
        const auto standing = m_watcher->Standing(m_known);
        std::map<SyncId, std::set<int>> shown;
        for (auto &[key, row] : m_rows) {
            const SyncId face = FactsOf(row.first).face;
            EXPECT_TRUE(shown.emplace(face, standing.contains(face) ? standing.at(face) : std::set<int>()).second);
            row.second = shown[face];
        }
        EXPECT_EQ(shown, standing);
    }
    std::optional<Row> Take(int index)
    {
        const auto row = std::next(m_rows.begin(), index);
        std::optional<Row> taken = row->second;
        m_rows.erase(row);
        return taken;
    }
    void Post(Mark mark, const std::set<int> &replaced)
    {
        mark.time = QString::number(++m_clock); // no two clocks agree
        const int change = m_watcher->Note(replaced, mark);
        m_known.insert(change);
        Insert(mark, {change});
    }
    int Insert(const Mark &mark, const std::set<int> &changes = {})
    {
        const int key = m_rows.empty() ? 1 : m_rows.rbegin()->first + 1;
        m_rows[key] = {mark, changes};
        return key;
    }
    const Mark &ContentOf(const SyncId &version) const
    {
        for (const auto &[number, file] : folder) {
            if (const auto mark = file->marks.find(version); mark != file->marks.end())
                return mark->second;
        }
        throw std::logic_error("nobody has the content");
    }
    void Follow(const SyncPlan &plan)
    {
        m_memory = {plan.state, plan.kept};
        for (const SyncStep &step : plan.steps) {
            std::optional<Mark> mark;
            if (step.kind == SyncStep::Kind::Retime)
                mark = m_rows.at(step.key).first;
            else if (step.kind != SyncStep::Kind::Delete)
                mark = ContentOf(step.version);
            m_rows.erase(step.key);
            if (!mark)
                continue;
            mark->time = plan.state.live.at(step.version).facts.time;
            EXPECT_EQ(FactsOf(*mark), plan.state.live.at(step.version).facts);
            const int key = Insert(*mark);
            for (const SyncId &version : step.versions)
                m_memory.keys[version] = key;
        }
        EXPECT_EQ(m_memory.keys.size(), plan.state.live.size());
    }
    void Write()
    {
        auto file = std::make_shared<Carried>(Carried{m_memory.state, {}, m_known});
        for (const auto &[version, key] : m_memory.keys) {
            Mark &mark = file->marks[version] = m_rows.at(key).first;
            mark.time = m_memory.state.live.at(version).facts.time;
        }
        folder[m_number] = std::move(file);
    }

    int m_number;
    Watcher *m_watcher;
    int m_clock;
    std::map<int, Row> m_rows;
    SyncMemory m_memory;
    std::set<int> m_known; ///< changes
};

/// What a machine's folder has comes into another one's.
void Carry(const Machine &from, Machine &to)
{
    for (const auto &[number, file] : from.folder)
        to.folder[number] = file;
}

void SyncAll(std::vector<Machine> &machines)
{
    for (size_t round = 0; round < 2; ++round) {
        for (Machine &machine : machines) {
            for (const Machine &other : machines) {
                for (const auto &[number, file] : other.folder) {
                    auto &mine = machine.folder[number];
                    if (!mine || mine->known.size() < file->known.size())
                        mine = file;
                }
            }
            machine.Sync();
        }
    }
}

void ExpectAgreement(std::vector<Machine> &machines)
{
    SyncAll(machines);
    for (Machine &machine : machines) {
        EXPECT_EQ(machine.Contents(), machines.front().Contents());
        EXPECT_THAT(machine.Sync().steps, IsEmpty());
    }
}

class Histories : public testing::TestWithParam<int>
{};

TEST_P(Histories, EndAsTheirCausesSay)
{
    constexpr unsigned histories = 400, length = 70;
    for (unsigned seed = 0; seed < histories && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(1000 * static_cast<unsigned>(GetParam()) + seed);
        const auto below = [&random](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
        Watcher watcher;
        std::vector<Machine> machines;
        for (int i = 0; i < GetParam(); ++i)
            machines.emplace_back(i, watcher);
        for (unsigned step = 0; step < length; ++step) {
            Machine &machine = machines[static_cast<size_t>(below(GetParam()))];
            const int rows = machine.RowCount();
            switch (const int what = below(10); what) {
            case 0:
            case 1:
                machine.Add("e" + QByteArray::number(watcher.changes.size()), below(3));
                break;
            case 2:
            case 3:
            case 4:
                if (rows > 0)
                    machine.Edit(below(rows), below(3), below(2));
                break;
            case 5:
                if (rows > 0)
                    machine.Delete(below(rows));
                break;
            case 6:
                Carry(machines[static_cast<size_t>(below(GetParam()))], machine); // also what is older than what it has
                break;
            default:
                machine.Sync(what == 7);
            }
        }
        ExpectAgreement(machines);
    }
}

TEST_P(Histories, LoseNothingWhereFilesAreCopiedAndRestored)
{
    constexpr unsigned histories = 300, length = 60;
    constexpr size_t mostMachines = 6;
    for (unsigned seed = 0; seed < histories && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(1000 * static_cast<unsigned>(GetParam()) + seed);
        const auto below = [&random](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
        Watcher watcher;
        std::vector<Machine> machines;
        for (int i = 0; i < GetParam(); ++i)
            machines.emplace_back(i, watcher).isWatched = false;
        std::set<QByteArray> excerpts;
        for (unsigned step = 0; step < length; ++step) {
            const int count = static_cast<int>(machines.size());
            Machine &machine = machines[static_cast<size_t>(below(count))];
            const int rows = machine.RowCount();
            switch (const int what = below(12); what) {
            case 0:
            case 1:
                machine.Add("e" + QByteArray::number(below(20)), below(3)); // some passages several times
                excerpts.merge(machine.Excerpts());
                break;
            case 2:
            case 3:
            case 4:
                if (rows > 0)
                    machine.Edit(below(rows), below(3), below(2));
                break;
            case 5:
                Carry(machines[static_cast<size_t>(below(count))], machine);
                break;
            case 6:
                machine.Forget();
                break;
            case 7:
                if (machines.size() < mostMachines)
                    machines.push_back(Machine(machine.CopyAs(count)));
                break;
            default:
                machine.Sync(what == 8);
            }
        }
        ExpectAgreement(machines);
        EXPECT_EQ(machines.front().Excerpts(), excerpts);
    }
}

INSTANTIATE_TEST_SUITE_P(Machines, Histories, testing::Values(2, 3, 5));

/// Two machines that agree on one mark of each excerpt, each with two clocks apart.
class TwoMachines : public testing::Test
{
protected:
    void Agree(const QByteArrayList &excerpts)
    {
        for (const QByteArray &excerpt : excerpts)
            m_machines[0].Add(excerpt, 0);
        SyncAll(m_machines);
    }
    /// The second machine's sync with all that the first one knows.
    SyncPlan Meet()
    {
        m_machines[0].Sync();
        Carry(m_machines[0], m_machines[1]);
        return m_machines[1].Sync();
    }

    Watcher m_watcher;
    std::vector<Machine> m_machines{Machine(0, m_watcher), Machine(1, m_watcher)};
};

TEST_F(TwoMachines, AConflictKeepsBothAndIsToldOnceOnEach)
{
    Agree({"a"});
    m_machines[0].Edit(0, 1, 0);
    m_machines[1].Edit(0, 2, 0);
    const SyncPlan plan = Meet();
    ASSERT_EQ(plan.conflicts.size(), 1U);
    EXPECT_EQ(plan.conflicts.front().size(), 2U);
    EXPECT_EQ(m_machines[1].RowCount(), 2);
    EXPECT_THAT(m_machines[1].Sync().conflicts, IsEmpty());
    Carry(m_machines[1], m_machines[0]);
    EXPECT_EQ(m_machines[0].Sync().conflicts.size(), 1U);
    ExpectAgreement(m_machines);
    // Whoever deletes one ends it for all.
    m_machines[0].Delete(0);
    Meet();
    EXPECT_EQ(m_machines[1].RowCount(), 1);
}

TEST_F(TwoMachines, TheSameEditOnBothIsOneAndNoConflict)
{
    Agree({"a"});
    m_machines[0].Edit(0, 1, 1);
    m_machines[1].Edit(0, 1, 1);
    EXPECT_THAT(Meet().conflicts, IsEmpty());
    EXPECT_EQ(m_machines[1].RowCount(), 1);
}

TEST_F(TwoMachines, ADeletionEndsWhatItSawAndNoLaterEdit)
{
    Agree({"a", "b"});
    m_machines[0].Delete(0);
    m_machines[0].Delete(0);
    m_machines[1].Edit(0, 1, 0);
    Meet();
    EXPECT_EQ(m_machines[1].RowCount(), 1);
    Carry(m_machines[1], m_machines[0]);
    const SyncPlan plan = m_machines[0].Sync();
    EXPECT_EQ(plan.returned.size(), 1U);
    EXPECT_THAT(plan.conflicts, IsEmpty());
    ExpectAgreement(m_machines);
}

TEST_F(TwoMachines, ACopiedFileIsNoSecondSetOfMarks)
{
    m_machines[0].Add("a", 0);
    m_machines[0].Add("b", 0);
    m_machines[0].Add("b", 1); // the same passage twice
    m_machines[1] = m_machines[0].CopyAs(1);
    m_machines[0].Sync();
    m_machines[0].Edit(0, 1, 0);
    const SyncPlan plan = Meet(); // its first one: its row is what the mark was before the edit
    EXPECT_THAT(plan.conflicts, IsEmpty());
    ASSERT_EQ(plan.steps.size(), 1U);
    EXPECT_EQ(plan.steps.front().kind, SyncStep::Kind::Change);
    ExpectAgreement(m_machines);
    // A copy that remembers the last sync goes on from there.
    m_machines.push_back(m_machines[0].CopyAs(2));
    m_machines[2].Edit(0, 5, 0);
    m_machines[0].Edit(1, 6, 0);
    ExpectAgreement(m_machines);
    EXPECT_EQ(m_machines[2].RowCount(), 3);
}

TEST_F(TwoMachines, ARestoredFileFindsItsMarksAgain)
{
    Agree({"a", "b"});
    m_machines[0].Edit(0, 1, 0);
    SyncAll(m_machines);
    m_machines[0].Forget();
    EXPECT_THAT(m_machines[0].Sync().steps, IsEmpty());
    ExpectAgreement(m_machines);
}

/// A row of one excerpt.
SyncRow RowOf(int key, const char *title, const char *note, int text = 1101)
{
    Mark mark;
    mark.collection = 6;
    mark.text = text;
    mark.title = QString::fromUtf8(title);
    mark.note = QString::fromUtf8(note);
    mark.time = QString::number(key);
    return {key, FactsOf(mark)};
}

TEST(SyncPlan, WhatComesWithoutAMemoryWasNotDeletedBefore)
{
    const std::vector<SyncRow> rows{RowOf(1, "restored", "")};
    SyncState others;
    others.past.insert(BirthOf(rows[0].facts.content, 0));
    const SyncPlan plan = PlanSync({}, rows, {&others});
    EXPECT_THAT(plan.steps, IsEmpty());
    EXPECT_TRUE(plan.state.live.contains(BirthOf(rows[0].facts.content, 1)));
}

TEST(SyncPlan, MarksOfOneExcerptAreToldApartByWhatIsAsItWas)
{
    const std::vector<SyncRow> before{RowOf(1, "one", "a"), RowOf(2, "two", "b"), RowOf(3, "three", "c", 1102)};
    const SyncPlan first = PlanSync({}, before, {});
    const SyncMemory memory{first.state, first.kept};
    const auto markOf = [](const SyncPlan &plan, int key) {
        for (const auto &[version, row] : plan.kept) {
            if (row == key)
                return plan.state.live.at(version).mark;
        }
        return SyncId();
    };
    // The second is gone, the first was edited and has its key, the third came to another text under its own.
    const SyncPlan second = PlanSync(memory, {RowOf(2, "one", "new"), RowOf(3, "three", "c", 2102)}, {});
    EXPECT_EQ(markOf(second, 2), markOf(first, 1));
    EXPECT_EQ(markOf(second, 3), markOf(first, 3));
    EXPECT_EQ(second.state.live.size(), 2U);
    EXPECT_EQ(second.state.past.size(), 3U);
    // Another mark on another text is no edit.
    const SyncPlan other = PlanSync(memory, {before[0], before[1], RowOf(3, "four", "d", 1103)}, {});
    EXPECT_EQ(markOf(other, 3), BirthOf(RowOf(3, "four", "d", 1103).facts.content, 0));
}

} // namespace
