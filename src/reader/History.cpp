#include "reader/History.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <utility>

bool History::IsOnStep() const
{
    return !m_steps.empty() && m_steps[m_at].place.text == m_shown;
}

void History::Push(const Place &place)
{
    if (!m_steps.empty())
        m_steps.resize(m_at + 1);
    if (m_steps.size() == MostSteps)
        m_steps.erase(m_steps.begin());
    m_steps.push_back({++m_lastNumber, place});
    m_at = m_steps.size() - 1;
}

void History::EndWalk(qint64 now)
{
    if (!m_walk || now - m_walk->since < RestTime)
        return;
    Push(m_walk->place);
    m_walk.reset();
}

void History::Moved(const Place &to, MoveKind kind, qint64 now)
{
    EndWalk(now);
    m_walk.reset();
    m_shown = to.text;
    if (IsOnStep())
        return;
    if (kind == MoveKind::Walk)
        m_walk = Walk{to, now};
    else if (kind == MoveKind::Jump)
        Push(to);
}

void History::Add(const Place &to, qint64 now)
{
    EndWalk(now);
    m_walk.reset();
    m_shown = to.text;
    Push(to);
}

int History::StepOnShow(qint64 now)
{
    EndWalk(now);
    return IsOnStep() ? m_steps[m_at].number : 0;
}

void History::Keep(int step, const Place &left)
{
    const auto found =
        std::find_if(m_steps.begin(), m_steps.end(), [step](const Step &other) { return other.number == step; });
    if (found != m_steps.end())
        found->place = left;
}

bool History::CanGoBack(qint64 now)
{
    EndWalk(now);
    return !m_steps.empty() && (m_at > 0 || !IsOnStep());
}

bool History::CanGoForward(qint64 now)
{
    EndWalk(now);
    return m_at + 1 < m_steps.size();
}

Place History::GoTo(std::size_t at)
{
    m_walk.reset();
    m_at = at;
    m_shown = m_steps[at].place.text;
    return m_steps[at].place;
}

std::optional<Place> History::Back(qint64 now)
{
    if (!CanGoBack(now))
        return std::nullopt;
    return GoTo(IsOnStep() ? m_at - 1 : m_at);
}

std::optional<Place> History::Forward(qint64 now)
{
    if (!CanGoForward(now))
        return std::nullopt;
    return GoTo(m_at + 1);
}

PlaceStore::PlaceStore(const QString &stored)
{
    const QJsonArray rows = QJsonDocument::fromJson(stored.toUtf8()).array();
    for (const QJsonValue &value : rows) {
        const QJsonArray row = value.toArray();
        const int text = row.at(0).toInt();
        if (text > 0 && !PlaceIn(text) && m_places.size() < MostTexts) {
            const QVariantMap page{{QStringLiteral("block"), row.at(2).toInt()},
                                   {QStringLiteral("cell"), row.at(3).toInt()},
                                   {QStringLiteral("share"), row.at(4).toDouble()},
                                   {QStringLiteral("segment"), row.at(5).toString()}};
            m_places.append({text, row.at(1).toInt(), PlaceOf(page)});
        }
    }
}

void PlaceStore::Keep(const Place &place)
{
    m_places.removeIf([&place](const Place &other) { return other.text == place.text; });
    m_places.prepend(place);
    if (m_places.size() > MostTexts)
        m_places.removeLast();
}

std::optional<PagePlace> PlaceStore::PlaceIn(int text) const
{
    const auto found =
        std::find_if(m_places.begin(), m_places.end(), [text](const Place &place) { return place.text == text; });
    return found == m_places.end() ? std::nullopt : std::optional(found->page);
}

QList<int> PlaceStore::Texts() const
{
    QList<int> texts;
    for (const Place &place : m_places)
        texts.append(place.text);
    return texts;
}

QString PlaceStore::Stored() const
{
    QJsonArray rows;
    for (const Place &place : m_places) {
        rows.append(QJsonArray{place.text, place.language, place.page.block, place.page.cell, place.page.share,
                               place.page.segment});
    }
    return QString::fromUtf8(QJsonDocument(rows).toJson(QJsonDocument::Compact));
}
