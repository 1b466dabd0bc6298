#include "lumivara-data/canon/CanonAddition.h"

#include "base/Messages.h"
#include "common/Console.h"
#include "common/Report.h"
#include "common/Tool.h"
#include "lumivara-data/canon/CanonRows.h"
#include "lumivara-data/canon/ReadingOrder.h"
#include "lumivara-data/sealed/SealedRun.h"
#include "stores/Schema.h"

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr int RootKey = -1;
constexpr int GroupNumberBase = 1000; ///< what the tree adds to a group's key

QString NameIn(const QList<QVariant> &row, int column)
{
    const QVariant value = row.value(column);
    return value.isNull() ? QString() : value.toString() + u""_s;
}

QString Joined(const QString &pali, const QString &vietnamese)
{
    return pali + QChar(0) + vietnamese;
}

/// What two states of a text have in common.
QString Identity(const QString &source, int key, const QString &pali, const QString &vietnamese)
{
    return source.isEmpty() ? QString::number(key) + QChar(0) + Joined(pali, vietnamese) : QChar(0) + source;
}

/// A group's names and the group above it.
QString NamesBelow(const CanonGroup &group)
{
    return QString::number(group.parent) + QChar(0) + Joined(group.namePali, group.nameVietnamese);
}

QString TreeKey(int text, int group)
{
    return QString::number(text) + QString::number(group);
}

/// Of a text's row.
qint64 RowKey(int text, int group)
{
    return qint64(group) << 32 | quint32(text);
}

/// Keys that an import has made stand in an order, in which others get theirs.
bool IsMade(int key)
{
    return key > KeyPlan::Base && key <= KeyPlan::Last;
}

} // namespace

CanonAddition::CanonAddition(const QString &target) : m_target(target), m_writer(target) {}

CanonAddition::~CanonAddition() = default;

QString CanonAddition::SourcePath() const
{
    return m_writer.Path() + u".added"_s;
}

void CanonAddition::Run(Report &report, Console &console)
{
    OnFile(SourcePath(), [&] { ReadSource(); });
    CopyKnown(report, console);
    PlanGroups();
    PlanTexts(report);
    OnFile(SourcePath(), [&] { WriteAdded(report, console); });
    QList<TextTraits> gone;
    for (auto source = m_knownSources.cbegin(); source != m_knownSources.cend(); ++source)
        gone.append({source.key(), *source, {}, false});
    m_writer.Keep(gone);
    const auto renewed =
        std::count_if(m_added.cbegin(), m_added.cend(), [](const Added &text) { return text.known >= 0; });
    report.Count(Sentence({u"bài được thêm", u"texts added"}), m_added.size() - renewed);
    report.Count(Sentence({u"bài được thay bằng bản mới", u"texts renewed"}), renewed);
    report.Count(Sentence({u"bài giữ nguyên", u"texts kept"}), m_known.size() - renewed);
    m_writer.Finish(report);
}

/// What is in the source, without its pages.
void CanonAddition::ReadSource()
{
    DataFile file;
    file.Open(SourcePath());
    Report ignored; // it was made here, of rows with keys
    for (const CanonGroup &group : CanonRows(file).Groups(ignored))
        m_sourceGroups.insert(group.idVit, group);
    QHash<int, QString> sources;
    for (const auto &[key, source] : KnownSources(file))
        sources.insert(key, source);
    for (const QList<QVariant> &row :
         file.Rows(u"select N.ID_VIT, N.ID_VIC, N.NAME_VIC_PAL, N.NAME_VIC_VIE from KELORA_CONTENT N "
                   "order by N.ID_VIC, N.ID_VIT"_s)) {
        const int key = row[1].toInt();
        const QString source = sources.value(key);
        m_byIdentity[Identity(source, key, row[2].toString(), row[3].toString())].append(m_added.size());
        m_sourceKeys.insert(key);
        m_added.append({row[0].toInt(), key, source});
    }
    file.Close();
}

/// Takes over what the canon has, but for the texts that the source renews.
void CanonAddition::CopyKnown(Report &report, Console &console)
{
    SealedRun run(m_target, console);
    run.PrepareDatabase();
    run.takeRow = [&](const QString &table, const QList<QVariant> &row) {
        if (table == QString(Table::KeloraSource)) {
            m_knownSources.insert(row.value(0).toInt(), row.value(1).toString());
        } else if (table == QString(Table::KeloraTree)) {
            m_groups.append(
                {row.value(0).toInt(), row.value(1).toInt(), NameIn(row, 2), NameIn(row, 3), NameIn(row, 4)});
            m_writer.Add(m_groups.last());
        } else {
            TakeKnown(row);
        }
    };
    run.takeValue = [&report](const QString &key, const QString &thing) {
        if (key == u"strange"_s)
            report.Note(thing, Sentence({u"không thuộc về kho kinh sách và bị bỏ",
                                         u"has no place in a canon and is left out"}));
    };
    Report found;
    run.Run(u"canon"_s, {}, found);
    if (found.FindingCount() > 0) {
        const auto &[place, fault] = found.Findings().first();
        throw ToolError(Sentence({u"%1: không đọc được toàn bộ, nên không thêm được gì vào đó: %2",
                                  u"%1: cannot be read whole, so nothing can be added to it: %2"})
                            .arg(m_target, place + u": "_s + fault));
    }
    // What is left are texts that are gone; they get their keys back if they come again.
    for (const Known &text : std::as_const(m_known))
        m_knownSources.remove(text.key);
    for (auto source = m_knownSources.cbegin(); source != m_knownSources.cend(); ++source) {
        Reserve(source.key());
        m_gone.insert(*source, source.key());
    }
}

void CanonAddition::TakeKnown(const QList<QVariant> &row)
{
    constexpr int firstPage = 6;
    CanonText text{row.value(0).toInt(),
                   row.value(1).toInt(),
                   row.value(2).isNull() ? std::nullopt : std::optional(row.value(2).toInt()),
                   NameIn(row, 4),
                   NameIn(row, 3),
                   NameIn(row, 5),
                   {},
                   m_knownSources.value(row.value(1).toInt())};
    Known known{text.idVit, text.idVic, text.number};
    for (int page = 0; page < CanonText::Pages; ++page) {
        const QVariant bytes = row.value(firstPage + page);
        if (!bytes.isNull())
            text.pages[page] = bytes.toByteArray().isNull() ? QByteArray("") : bytes.toByteArray();
        known.hasPage[page] = !text.pages[page].isEmpty();
    }
    // Each of the source's texts is given once.
    const auto same = m_byIdentity.find(Identity(text.source, text.idVic, text.namePali, text.nameVietnamese));
    if (same != m_byIdentity.end() && !same->isEmpty())
        m_added[same->takeFirst()].known = m_known.size();
    else
        m_writer.Add(text, false);
    m_known.append(known);
    m_keys.insert(known.key);
    m_treeKeys.insert(TreeKey(known.key, known.group));
}

/// Groups of the source that have to be somewhere: those with new texts, and those above them up to one that is known.
QSet<int> CanonAddition::WantedGroups() const
{
    QSet<int> wanted;
    for (const Added &text : m_added) {
        if (text.known >= 0)
            continue;
        for (int group = text.sourceGroup; m_sourceGroups.contains(group) && !m_groupOf.contains(group);
             group = m_sourceGroups[group].parent) {
            if (wanted.contains(group))
                break;
            wanted.insert(group);
        }
    }
    return wanted;
}

/// Without recursion: groups may nest as deep as a table is long.
void CanonAddition::PlanGroups()
{
    for (const CanonGroup &group : std::as_const(m_groups)) {
        m_treeKeys.insert(QString::number(group.idVit));
        m_lastGroup = qMax(m_lastGroup, group.idVit);
        if (!(group.namePali + group.nameVietnamese).isEmpty() && !m_byNames.contains(NamesBelow(group)))
            m_byNames.insert(NamesBelow(group), group.idVit);
    }
    constexpr int largest = 1'000'000'000; // the tree adds to it
    if (m_lastGroup >= largest)
        m_lastGroup = 0;
    // A group is where its known texts are.
    for (const Added &text : std::as_const(m_added)) {
        if (text.known >= 0 && !m_groupOf.contains(text.sourceGroup))
            m_groupOf.insert(text.sourceGroup, m_known[text.known].group);
    }
    const QSet<int> wanted = WantedGroups();
    QList<int> sorted(wanted.cbegin(), wanted.cend());
    std::sort(sorted.begin(), sorted.end());
    QHash<int, QList<int>> below;
    QList<int> tops;
    for (const int group : std::as_const(sorted)) {
        const int parent = m_sourceGroups[group].parent;
        if (wanted.contains(parent))
            below[parent].append(group);
        else
            tops.append(group);
    }
    // What hangs on a cycle comes last.
    for (const int top : tops + sorted) {
        QList<int> waiting{top};
        while (!waiting.isEmpty()) {
            const int group = waiting.takeLast();
            if (m_groupOf.contains(group))
                continue;
            PlaceGroup(group);
            const QList<int> &children = below[group];
            waiting.append(QList<int>(children.crbegin(), children.crend()));
        }
    }
}

/// The group of the same names below the same one, else a new one.
void CanonAddition::PlaceGroup(int sourceKey)
{
    CanonGroup group = m_sourceGroups[sourceKey];
    group.parent = m_groupOf.value(group.parent, RootKey);
    if (const auto same = m_byNames.constFind(NamesBelow(group)); same != m_byNames.cend()) {
        m_groupOf.insert(sourceKey, *same);
        return;
    }
    group.idVit = NewGroupKey();
    m_groupOf.insert(sourceKey, group.idVit);
    m_groups.append(group);
    m_treeKeys.insert(QString::number(group.idVit));
    m_writer.Add(group);
}

/// Behind all others, because the tree shows them by their keys, and none that the tree would take for another row's.
int CanonAddition::NewGroupKey()
{
    do {
        ++m_lastGroup;
    } while (m_treeKeys.contains(QString::number(m_lastGroup)) || m_keys.contains(GroupNumberBase + m_lastGroup) ||
             m_sourceKeys.contains(GroupNumberBase + m_lastGroup));
    return m_lastGroup;
}

/// A new text that stands between known ones of its group in the source stands behind the one before it; those before
/// the first known one come before it, and those behind the last one behind all of the group.
QList<CanonAddition::Place> CanonAddition::InReadingOrder() const
{
    QHash<qsizetype, QList<qsizetype>> before, behind; // of a known text
    QHash<int, QList<qsizetype>> last;                 // of a group
    struct Walk
    {
        qsizetype known = -1;
        QList<qsizetype> waiting;
    };
    QHash<int, Walk> walks; // by the source's group
    for (qsizetype at = 0; at < m_added.size(); ++at) {
        const Added &text = m_added[at];
        Walk &walk = walks[text.sourceGroup];
        const int group = m_groupOf.value(text.sourceGroup);
        if (text.known < 0) {
            walk.waiting.append(at);
        } else if (m_known[text.known].group == group) {
            (walk.known < 0 ? before[text.known] : behind[walk.known]) += walk.waiting;
            walk.waiting.clear();
            walk.known = text.known;
        }
    }
    QList<int> walked = walks.keys();
    std::sort(walked.begin(), walked.end());
    for (const int sourceGroup : std::as_const(walked))
        last[m_groupOf.value(sourceGroup)] += walks[sourceGroup].waiting;

    QList<int> groups;
    QHash<int, int> parents;
    for (const CanonGroup &group : m_groups) {
        groups.append(group.idVit);
        parents.insert(group.idVit, group.parent);
    }
    std::sort(groups.begin(), groups.end());
    QHash<int, qsizetype> places;
    for (qsizetype at = 0; at < groups.size(); ++at)
        places.insert(groups[at], at);
    QList<qsizetype> parentPlaces;
    for (const int group : std::as_const(groups))
        parentPlaces.append(places.value(parents[group], -1));

    QList<qsizetype> known(m_known.size());
    for (qsizetype at = 0; at < known.size(); ++at)
        known[at] = at;
    std::stable_sort(known.begin(), known.end(),
                     [this](qsizetype a, qsizetype b) { return m_known[a].key < m_known[b].key; });
    QList<Place> all;
    QList<ReadingOrder::Text> texts;
    const auto put = [&](bool isKnown, qsizetype at, int group) {
        all.append({isKnown, at});
        texts.append({places.value(group, -1), {}, {}});
    };
    const auto putAll = [&](const QList<qsizetype> &added, int group) {
        for (const qsizetype at : added)
            put(false, at, group);
    };
    for (const qsizetype at : std::as_const(known)) {
        const int group = m_known[at].group;
        putAll(before.value(at), group);
        put(true, at, group);
        putAll(behind.value(at), group);
    }
    for (const int group : std::as_const(groups))
        putAll(last.value(group), group);
    QList<Place> ordered;
    for (const qsizetype at : ReadingOrder::Of(parentPlaces, texts, true))
        ordered.append(all[at]);
    return ordered;
}

/// The key that a new text brings, or had when it was there before; none if another one needs it or an import has made
/// it for its own order.
std::optional<int> CanonAddition::OwnKey(const Added &text)
{
    const auto gone = m_gone.constFind(text.source);
    const int key = gone == m_gone.cend() ? text.sourceKey : *gone;
    if (gone == m_gone.cend() && (IsMade(key) || m_knownSources.contains(key)))
        return std::nullopt;
    if (m_keys.contains(key) || m_groupNumbers.contains(key) || m_treeKeys.contains(TreeKey(key, text.group)))
        return std::nullopt;
    m_knownSources.remove(key);
    m_keys.insert(key);
    m_treeKeys.insert(TreeKey(key, text.group));
    return key;
}

void CanonAddition::PlanTexts(Report &report)
{
    for (const CanonGroup &group : std::as_const(m_groups)) {
        m_plan.ReserveForGroup(group.idVit);
        m_groupNumbers.insert(qint64(GroupNumberBase) + group.idVit);
    }
    int number = 0;
    for (const Known &text : std::as_const(m_known))
        number = qMax(number, text.number.value_or(0));
    const QList<Place> places = InReadingOrder();
    QList<std::optional<int>> kept;
    for (const Place &place : places) {
        if (place.isKnown) {
            kept.append(m_known[place.at].key);
            continue;
        }
        Added &text = m_added[place.at];
        text.group = m_groupOf.value(text.sourceGroup);
        kept.append(OwnKey(text));
        if (number < std::numeric_limits<int>::max())
            text.number = ++number;
    }
    QList<qsizetype> order(places.size());
    for (qsizetype at = 0; at < order.size(); ++at)
        order[at] = at;
    KeyPlan::Keys plan;
    try {
        plan = m_plan.For(kept);
    } catch (const ToolError &) {
        // Behind all others there is room.
        std::stable_partition(order.begin(), order.end(), [&](qsizetype at) { return kept[at].has_value(); });
        QList<std::optional<int>> reordered;
        for (const qsizetype at : std::as_const(order))
            reordered.append(kept[at]);
        plan = m_plan.For(reordered);
        report.Note(m_target, Sentence({u"giữa các bài đang có không còn đủ khóa trống; các bài mới đứng sau mọi bài",
                                        u"between the texts that are there too few keys are free; the new texts stand "
                                        u"behind all of them"}));
    }
    for (qsizetype at = 0; at < order.size(); ++at) {
        if (const Place &place = places[order[at]]; !place.isKnown)
            m_added[place.at].key = plan.keys[at];
    }
    for (Added &text : m_added) {
        if (text.known < 0)
            continue;
        text.group = m_known[text.known].group;
        text.key = m_known[text.known].key;
        text.number = m_known[text.known].number;
    }
}

void CanonAddition::WriteAdded(Report &report, Console &console)
{
    QHash<qint64, qsizetype> places;
    for (qsizetype at = 0; at < m_added.size(); ++at)
        places.insert(RowKey(m_added[at].sourceKey, m_added[at].sourceGroup), at);
    DataFile file;
    file.Open(SourcePath());
    CanonRows rows(file);
    Report ignored;
    qsizetype done = 0;
    for (CanonText text; rows.Next(text, ignored);) {
        const Added &added = m_added[places[RowKey(text.idVic, text.idVit)]];
        const QString place = Sentence({u"bài %1", u"text %1"}).arg(added.key);
        if (added.known < 0 && added.key != added.sourceKey && !IsMade(added.sourceKey)) {
            report.Note(place, Sentence({u"khóa %1 của nó là của một bài khác ở đây",
                                         u"its key %1 is that of another row here"})
                                   .arg(added.sourceKey));
        }
        for (int page = 0; page < CanonText::Pages; ++page) {
            if (added.known >= 0 && m_known[added.known].hasPage[page] && text.pages[page].isEmpty())
                report.Note(place, Sentence({u"bản mới không có %1, bản cũ thì có",
                                             u"the new one has no %1, and the old one had"})
                                       .arg(PageColumns()[page]));
        }
        text.idVit = added.group;
        text.idVic = added.key;
        text.number = added.number;
        m_writer.Add(text, true);
        console.Progress(Table::KeloraContent, ++done, m_added.size());
    }
    console.EndProgress();
    file.Close();
}
