#include "lumivara-data/sync/SyncState.h"

#include <algorithm>

void SyncState::EndVersions(const std::vector<SyncId> &versions)
{
    for (const SyncId &version : versions) {
        live.erase(version);
        past.insert(version);
    }
}

void SyncState::Join(const SyncState &other)
{
    past.insert(other.past.begin(), other.past.end());
    live.insert(other.live.begin(), other.live.end());
    std::erase_if(live, [this](const auto &version) { return past.contains(version.first); });
}

SyncId BirthOf(const SyncId &content, int number)
{
    return SyncId::Of({"birth", content.Hex(), QByteArray::number(number)});
}

SyncId EditOf(const SyncId &mark, std::vector<SyncId> replaced, const SyncId &content)
{
    std::sort(replaced.begin(), replaced.end());
    QByteArrayList parts{"edit", mark.Hex(), content.Hex()};
    for (const SyncId &version : replaced)
        parts.append(version.Hex());
    return SyncId::Of(parts);
}
