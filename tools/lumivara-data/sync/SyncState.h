#pragma once

#include "lumivara-data/sync/MarkFacts.h"

#include <map>
#include <set>
#include <vector>

/// One version of a mark. The mark bears the name of its first version.
struct SyncVersion
{
    SyncId mark;
    MarkFacts facts;
};

/// What a machine knows: the versions that stand, and the names of those that do no longer, because they were edited
/// or deleted. A version that is past for one is past for all. So states can be joined in any order, twice or late, and
/// come to the same; no clock and no count of a machine has a say.
struct SyncState
{
    std::map<SyncId, SyncVersion> live;
    std::set<SyncId> past;

    bool Knows(const SyncId &version) const { return live.contains(version) || past.contains(version); }
    /// Versions that do not stand any more, whether known or not.
    void EndVersions(const std::vector<SyncId> &versions);
    void Join(const SyncState &other);
};

/// The name of a mark that a file has and nobody knows yet, and of its first version: equal marks of two machines are
/// one mark. `number` tells equal marks of one file apart, from 0.
SyncId BirthOf(const SyncId &content, int number);
/// The name of what an edit makes of some versions of a mark. Equal edits of the same versions are one.
SyncId EditOf(const SyncId &mark, std::vector<SyncId> replaced, const SyncId &content);
