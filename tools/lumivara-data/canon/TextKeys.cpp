#include "lumivara-data/canon/TextKeys.h"

#include "base/Messages.h"
#include "common/Report.h"
#include "stores/Schema.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// FNV-1a: the same on every machine and in every version.
quint64 DigestOf(const QString &text)
{
    quint64 digest = 14695981039346656037ULL;
    for (const char byte : text.toUtf8())
        digest = (digest ^ uchar(byte)) * 1099511628211ULL;
    return digest;
}

/// The key that earlier versions gave to a text, wherever it stood.
int EarlierKey(const QString &source)
{
    constexpr quint64 earlierKeys = 90'000'000;
    return KeyPlan::Base + static_cast<int>(DigestOf(source) % earlierKeys);
}

using Pairs = QHash<qsizetype, qsizetype>;

/// Joins texts whose traits give the same value; a trait gives an empty one where it can't be compared. Of values that
/// come more than once the first text goes to the first, or none if they have to be `unique`.
template <typename Trait>
void Join(const QList<TextTraits> &before, const QList<TextTraits> &now, Trait trait, bool isUnique, Pairs &pairs,
          QSet<qsizetype> &joined)
{
    QHash<QString, QList<qsizetype>> known, met;
    for (qsizetype at = 0; at < before.size(); ++at) {
        if (const QString value = trait(before[at]); !value.isEmpty())
            known[value].append(at);
    }
    for (qsizetype at = 0; at < now.size(); ++at) {
        if (const QString value = trait(now[at]); known.contains(value))
            met[value].append(at);
    }
    for (auto one = met.cbegin(); one != met.cend(); ++one) {
        const QList<qsizetype> &olds = known[one.key()], &news = *one;
        if (isUnique && (olds.size() > 1 || news.size() > 1))
            continue;
        for (qsizetype i = 0; i < qMin(olds.size(), news.size()); ++i) {
            if (pairs.contains(olds[i]) || joined.contains(news[i]))
                continue;
            pairs.insert(olds[i], news[i]);
            joined.insert(news[i]);
        }
    }
}

QString NamesOf(const TextTraits &text)
{
    const QString &pali = text.names[size_t(Language::Pali)], &vietnamese = text.names[size_t(Language::Vietnamese)];
    return pali.isEmpty() && vietnamese.isEmpty() ? QString() : pali + QChar(0) + vietnamese;
}

} // namespace

Pairs SameTexts(const QList<TextTraits> &before, const QList<TextTraits> &now)
{
    Pairs pairs;
    QSet<qsizetype> joined;
    Join(before, now, [](const TextTraits &text) { return text.source; }, false, pairs, joined);
    // Only a text without a source can have such a key; of the new ones the key is not asked.
    QHash<int, qsizetype> earlier;
    for (qsizetype at = 0; at < now.size(); ++at) {
        if (!now[at].source.isEmpty() && !joined.contains(at))
            earlier.insert(EarlierKey(now[at].source), at);
    }
    for (qsizetype at = 0; at < before.size(); ++at) {
        const auto found = before[at].source.isEmpty() ? earlier.constFind(before[at].key) : earlier.cend();
        if (found == earlier.cend() || pairs.contains(at) || joined.contains(*found))
            continue;
        pairs.insert(at, *found);
        joined.insert(*found);
    }
    Join(before, now, NamesOf, true, pairs, joined);
    return pairs;
}

QString KeptSource(const QString &source)
{
    if (source.size() <= Length::Source)
        return source;
    constexpr qsizetype digestLength = 17;
    QString start = source.left(Length::Source - digestLength);
    if (start.back().isHighSurrogate())
        start.chop(1);
    return start + u'~' + QString::number(DigestOf(source), 16);
}

TextKeys::TextKeys(std::function<QList<TextTraits>()> before, bool renumbers)
    : m_read(std::move(before)), m_renumbers(renumbers)
{}

/// Keys that no import has made are those of another collection, such as the sample's, and stay with it.
bool TextKeys::IsKept(const TextTraits &text) const
{
    return !m_renumbers && text.key > KeyPlan::Base && text.key <= KeyPlan::Last;
}

void TextKeys::Move(int from, int to)
{
    if (from != to)
        m_moved.insert(from, to);
}

QList<int> TextKeys::For(const QList<Text> &texts)
{
    m_before = m_read();
    for (const TextTraits &text : std::as_const(m_before))
        Reserve(text.key);
    QList<TextTraits> wanted;
    QList<std::optional<int>> kept;
    QSet<int> given;
    for (const Text &text : texts) {
        wanted.append({0, text.source, {}});
        kept.append(text.given);
        if (text.given)
            given.insert(*text.given);
    }
    const QHash<qsizetype, qsizetype> same = SameTexts(m_before, wanted);
    for (auto pair = same.cbegin(); pair != same.cend(); ++pair) {
        const TextTraits &before = m_before[pair.key()];
        if (!kept[*pair] && IsKept(before) && !given.contains(before.key))
            kept[*pair] = before.key;
        m_keptCount += kept[*pair] == before.key ? 1 : 0;
    }
    const KeyPlan::Keys plan = m_plan.For(kept);
    for (auto pair = same.cbegin(); pair != same.cend(); ++pair) {
        m_found.insert(pair.key());
        m_ownKeys.insert(plan.keys[*pair]);
        Move(m_before[pair.key()].key, plan.keys[*pair]);
    }
    m_ownKeys.unite(given);
    m_newCount = texts.size() - m_keptCount;
    m_astrayCount = plan.astray.size();
    return plan.keys;
}

QHash<qsizetype, int> TextKeys::Recognise(const QList<TextTraits> &now)
{
    QList<TextTraits> before, fresh;
    QList<qsizetype> beforePlaces, places;
    for (qsizetype at = 0; at < m_before.size(); ++at) {
        if (!m_found.contains(at) && m_before[at].isThere) {
            before.append({m_before[at].key, {}, m_before[at].names});
            beforePlaces.append(at);
        }
    }
    QHash<QString, int> met; // a name that a known text has too tells nothing
    for (const TextTraits &text : now)
        ++met[NamesOf(text)];
    for (qsizetype at = 0; at < now.size(); ++at) {
        if (!m_ownKeys.contains(now[at].key) && met[NamesOf(now[at])] == 1) {
            fresh.append({now[at].key, {}, now[at].names});
            places.append(at);
        }
    }
    QHash<qsizetype, int> keys;
    const QHash<qsizetype, qsizetype> same = SameTexts(before, fresh);
    for (auto pair = same.cbegin(); pair != same.cend(); ++pair) {
        const TextTraits &old = before[pair.key()];
        const TextTraits &text = fresh[*pair];
        m_found.insert(beforePlaces[pair.key()]);
        if (!IsKept(old)) {
            Move(old.key, text.key);
            continue;
        }
        keys.insert(places[*pair], old.key);
        m_byNames.append(Sentence({u"%1 giữ khóa %2: nguồn khác, nhưng tên vẫn như cũ",
                                   u"%1 keeps the key %2: its source is another one, its names are the same"})
                             .arg(text.names[0].isEmpty() ? text.names[1] : text.names[0], QString::number(old.key)));
        ++m_keptCount;
        --m_newCount;
    }
    return keys;
}

QHash<int, int> TextKeys::Moved() const
{
    QHash<int, int> moved;
    for (auto pair = m_moved.cbegin(); pair != m_moved.cend(); ++pair) {
        if (!m_moved.contains(*pair))
            moved.insert(pair.key(), *pair);
    }
    return moved;
}

QList<TextTraits> TextKeys::Gone() const
{
    QList<TextTraits> gone;
    for (qsizetype at = 0; at < m_before.size(); ++at) {
        if (!m_found.contains(at) && !m_before[at].source.isEmpty())
            gone.append(m_before[at]);
    }
    return gone;
}

void TextKeys::Tell(const QString &place, Report &report) const
{
    if (m_before.isEmpty())
        return;
    QStringList byNames = m_byNames;
    byNames.sort();
    for (const QString &told : std::as_const(byNames))
        report.Note(place, told);
    if (m_astrayCount > 0) {
        report.Note(
            place,
            Sentence({u"%1 bài có khóa theo thứ tự cũ và đứng sai chỗ; --renumber xếp lại cho đúng",
                      u"%1 texts have keys from another order and stand out of place; --renumber puts them in order"})
                .arg(m_astrayCount));
    }
    report.Count(Sentence({u"khóa được giữ", u"keys kept"}), m_keptCount);
    report.Count(Sentence({u"khóa mới", u"new keys"}), m_newCount);
}
