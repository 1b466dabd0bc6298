#include "lumivara-data/canon/ReadingOrder.h"

#include "lumivara-data/files/SourceFolder.h"

#include <algorithm>
#include <numeric>

namespace {

bool IsDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

/// For each group the number of groups that are read to their end before it is. A cycle is broken at its first group.
QList<qsizetype> RanksOf(const QList<qsizetype> &parents)
{
    const qsizetype root = parents.size();
    QList<QList<qsizetype>> children(root + 1);
    for (qsizetype group = 0; group < root; ++group) {
        const qsizetype parent = parents[group];
        children[parent < 0 || parent >= root ? root : parent].append(group);
    }
    QList<qsizetype> ranks(root + 1, 0);
    QList<bool> isMet(root + 1, false);
    qsizetype next = 0;
    // Without recursion: a table may nest as deep as it is long.
    const auto walk = [&](qsizetype top) {
        QList<std::pair<qsizetype, qsizetype>> way{{top, 0}}; // group, its next child
        isMet[top] = true;
        while (!way.isEmpty()) {
            auto &[group, child] = way.last();
            if (child == children[group].size()) {
                ranks[group] = next++;
                way.removeLast();
            } else if (const qsizetype below = children[group][child++]; !isMet[below]) {
                isMet[below] = true;
                way.append({below, 0});
            }
        }
    };
    walk(root);
    for (qsizetype group = 0; group < root; ++group) {
        if (!isMet[group])
            walk(group);
    }
    return ranks;
}

/// True if each of the names has a number where they begin to differ or behind that.
bool AreNumbered(const QStringList &names)
{
    const QString &first = names.first();
    qsizetype common = first.size();
    for (const QString &name : names) {
        const auto [end, ignored] = std::mismatch(first.cbegin(), first.cbegin() + common, name.cbegin(), name.cend());
        common = end - first.cbegin();
    }
    while (common > 0 && IsDigit(first[common - 1]))
        --common;
    return std::all_of(names.cbegin(), names.cend(), [common](const QString &name) {
        return std::any_of(name.cbegin() + common, name.cend(), IsDigit);
    });
}

using Places = QList<qsizetype>;

/// Sorts the texts of one group.
void SortGroup(Places::iterator begin, Places::iterator end, const QList<ReadingOrder::Text> &texts, bool tells)
{
    const auto unnumbered =
        std::stable_partition(begin, end, [&](qsizetype at) { return texts[at].number.has_value(); });
    std::stable_sort(begin, unnumbered, [&](qsizetype a, qsizetype b) { return *texts[a].number < *texts[b].number; });
    if (end - unnumbered < 2)
        return;
    qsizetype kind = 0;
    const qsizetype kinds = texts[*unnumbered].names.size();
    for (; kind < kinds; ++kind) {
        QStringList names;
        for (auto at = unnumbered; at != end; ++at)
            names.append(texts[*at].names[kind]);
        if (AreNumbered(names))
            break;
    }
    if (kind == kinds && tells)
        return;
    if (kind == kinds)
        kind = 0;
    std::stable_sort(unnumbered, end,
                     [&](qsizetype a, qsizetype b) { return NaturalLess(texts[a].names[kind], texts[b].names[kind]); });
}

} // namespace

QList<qsizetype> ReadingOrder::Of(const QList<qsizetype> &parents, const QList<Text> &texts, bool tells)
{
    Places places(texts.size());
    std::iota(places.begin(), places.end(), 0);
    if (std::all_of(texts.cbegin(), texts.cend(), [](const Text &text) { return text.number.has_value(); })) {
        SortGroup(places.begin(), places.end(), texts, tells);
        return places;
    }
    const Places ranks = RanksOf(parents);
    const auto rank = [&](qsizetype at) {
        const qsizetype group = texts[at].group;
        return group < 0 || group >= parents.size() ? parents.size() + 1 : ranks[group];
    };
    std::stable_sort(places.begin(), places.end(), [&](qsizetype a, qsizetype b) { return rank(a) < rank(b); });
    for (auto begin = places.begin(); begin != places.end();) {
        const auto end = std::find_if(begin, places.end(), [&](qsizetype at) { return rank(at) != rank(*begin); });
        SortGroup(begin, end, texts, tells);
        begin = end;
    }
    return places;
}
