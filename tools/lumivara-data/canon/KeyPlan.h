#pragma once

#include <QList>

#include <optional>
#include <set>

/// New keys for the texts of a canon, between those of texts that keep theirs, so that they ascend in reading order as
/// far as these do. All have eight digits: joined to a group's key no two are equal.
class KeyPlan
{
public:
    /// New keys lie above Base; where nothing follows they stand at the distance Step, so that texts can come between.
    static constexpr int Base = 10'000'000, Step = 1'000, Last = 99'999'999;

    /// Nothing new gets this key.
    void Reserve(int key) { m_reserved.insert(key); }
    /// What a group's key rules out: the key of a text that the group would show, and those that make the same key in
    /// the tree.
    void ReserveForGroup(int group);

    struct Keys
    {
        QList<int> keys;
        /// Places of the texts whose kept key does not ascend with the others.
        QList<qsizetype> astray;
    };
    /// The keys of texts in reading order, of which some have one. Throws ToolError if between two of them there are
    /// too few.
    Keys For(const QList<std::optional<int>> &kept) const;

private:
    QList<int> AtSteps(int below, qsizetype count) const;
    QList<int> Between(int below, int above, qsizetype count) const;

    std::set<int> m_reserved;
};
