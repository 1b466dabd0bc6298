#include "lumivara-data/canon/KeyPlan.h"

#include "base/Messages.h"
#include "common/Tool.h"

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

bool IsInRange(const std::optional<int> &key)
{
    return key && *key > KeyPlan::Base && *key <= KeyPlan::Last;
}

/// The most texts whose keys ascend, by their places. Keys out of range, which are given and not made, bind nobody.
QList<qsizetype> Anchors(const QList<std::optional<int>> &kept)
{
    std::vector<qsizetype> lasts;                        // the text with the lowest key that ends a row of each length
    QList<qsizetype> before(kept.size(), qsizetype(-1)); // in the row that a text ends
    for (qsizetype at = 0; at < kept.size(); ++at) {
        if (!IsInRange(kept[at]))
            continue;
        const auto place = std::lower_bound(lasts.begin(), lasts.end(), *kept[at],
                                            [&](qsizetype last, int key) { return *kept[last] < key; });
        if (place != lasts.begin())
            before[at] = *(place - 1);
        if (place == lasts.end())
            lasts.push_back(at);
        else
            *place = at;
    }
    QList<qsizetype> anchors;
    for (qsizetype at = lasts.empty() ? -1 : lasts.back(); at >= 0; at = before[at])
        anchors.prepend(at);
    return anchors;
}

} // namespace

void KeyPlan::ReserveForGroup(int group)
{
    constexpr int groupNumberBase = 1000;
    if (group <= KeyPlan::Last)
        Reserve(groupNumberBase + group);
    // "10001000" and the group 1 make 100010001.
    for (; group > KeyPlan::Last; group /= 10)
        Reserve(group / 10);
}

/// Behind all others, as far as the steps lead; empty if they lead too far.
QList<int> KeyPlan::AtSteps(int below, qsizetype count) const
{
    const qint64 first = (below / Step + 1) * qint64(Step);
    if (first + count * Step > Last)
        return {};
    const auto isFree = [this](qint64 key) { return !m_reserved.contains(static_cast<int>(key)); };
    constexpr int mostShifts = 16; // a list of keys can be made so that each of them meets one at its end
    for (int shift = 0; shift < mostShifts; ++shift) {
        qsizetype free = 0;
        while (free < count && isFree(first + shift + free * Step))
            ++free;
        if (free < count)
            continue;
        QList<int> keys;
        for (qsizetype i = 0; i < count; ++i)
            keys.append(static_cast<int>(first + shift + i * Step));
        return keys;
    }
    return {};
}

/// As far from each other as the free keys allow.
QList<int> KeyPlan::Between(int below, int above, qsizetype count) const
{
    const auto begin = m_reserved.upper_bound(below), end = m_reserved.lower_bound(above);
    const qint64 free = qint64(above) - below - 1 - std::distance(begin, end);
    if (free < count) {
        throw ToolError(Sentence({u"giữa %1 và %2 không còn khóa trống cho %3 bài mới; --renumber cho mọi bài khóa mới "
                                  u"và chuyển ghi chép theo",
                                  u"no key is free between %1 and %2 for %3 new texts; --renumber gives all texts new "
                                  u"keys, and takes their marks along"})
                            .arg(below)
                            .arg(above)
                            .arg(count));
    }
    QList<int> keys;
    auto reserved = begin;
    int passed = 0;
    for (qsizetype i = 1; i <= count; ++i) {
        auto key = static_cast<int>(below + i * (free + 1) / (count + 1)) + passed;
        for (; reserved != end && *reserved <= key; ++reserved) {
            ++key;
            ++passed;
        }
        keys.append(key);
    }
    return keys;
}

KeyPlan::Keys KeyPlan::For(const QList<std::optional<int>> &kept) const
{
    KeyPlan all = *this;
    for (const std::optional<int> &key : kept) {
        if (key)
            all.Reserve(*key);
    }
    Keys plan;
    plan.keys.resize(kept.size());
    QList<qsizetype> anchors = Anchors(kept);
    qsizetype begin = 0;
    int below = Base;
    for (qsizetype next = 0; next <= anchors.size(); ++next) {
        const bool isLast = next == anchors.size();
        const qsizetype end = isLast ? kept.size() : anchors[next];
        const int above = isLast ? Last + 1 : *kept[end];
        const qsizetype count = std::count(kept.cbegin() + begin, kept.cbegin() + end, std::nullopt);
        QList<int> keys = isLast ? all.AtSteps(below, count) : QList<int>();
        if (keys.size() < count)
            keys = all.Between(below, above, count);
        for (qsizetype at = begin; at < end; ++at) {
            plan.keys[at] = kept[at] ? *kept[at] : keys.takeFirst();
            if (IsInRange(kept[at]))
                plan.astray.append(at);
        }
        if (isLast)
            break;
        plan.keys[end] = above;
        begin = end + 1;
        below = above;
    }
    return plan;
}
