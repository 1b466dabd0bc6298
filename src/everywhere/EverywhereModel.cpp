#include "everywhere/EverywhereModel.h"

#include "everywhere/EverywhereScan.h"

#include <algorithm>
#include <exception>

namespace {

constexpr int hitsKept = 500; ///< more than a view shows at a time

} // namespace

EverywhereModel::EverywhereModel(EverywhereScan &scan, QObject *parent)
    : QAbstractListModel(parent), m_scan(scan), m_hits(hitsKept)
{}

void EverywhereModel::Clear()
{
    beginResetModel();
    m_starts.clear();
    m_inAll = 0;
    m_shown = 0;
    m_hits.clear();
    endResetModel();
}

void EverywhereModel::TextCame(int text)
{
    const qint64 start = text < static_cast<int>(m_starts.size()) ? m_starts[static_cast<size_t>(text)] : m_inAll;
    const qint64 rows = 1 + m_scan.Text(text).hitCount;
    // The scan has the text already; whoever looks before its rows are in gets the old ones.
    m_coming = text;
    const bool isShown = start < MostRows;
    const int coming = isShown ? static_cast<int>(std::min<qint64>(rows, MostRows - start)) : 0;
    // What no longer fits goes from the end first.
    if (const int staying = std::min(m_shown, MostRows - coming); isShown && staying < m_shown) {
        beginRemoveRows({}, staying, m_shown - 1);
        m_shown = staying;
        endRemoveRows();
    }
    if (isShown)
        beginInsertRows({}, static_cast<int>(start), static_cast<int>(start) + coming - 1);
    for (auto later = m_starts.insert(m_starts.begin() + text, start) + 1; later != m_starts.end(); ++later)
        *later += rows;
    m_inAll += rows;
    m_shown += coming;
    m_coming = -1;
    m_hits.clear();
    if (isShown)
        endInsertRows();
}

int EverywhereModel::InScan(int text) const
{
    return m_coming >= 0 && text >= m_coming ? text + 1 : text;
}

int EverywhereModel::TextOf(int row) const
{
    return static_cast<int>(std::upper_bound(m_starts.begin(), m_starts.end(), row) - m_starts.begin()) - 1;
}

bool EverywhereModel::IsHit(int row) const
{
    return row >= 0 && row < m_shown && m_starts[static_cast<size_t>(TextOf(row))] != row;
}

const EverywhereText &EverywhereModel::TextAt(int row) const
{
    return m_scan.Text(InScan(TextOf(row)));
}

const EverywhereHit &EverywhereModel::HitAt(int row) const
{
    if (const EverywhereHit *known = m_hits.object(row))
        return *known;
    const int text = TextOf(row);
    const auto hit = static_cast<int>(row - m_starts[static_cast<size_t>(text)] - 1);
    auto *read = new EverywhereHit(m_scan.Hit(InScan(text), hit));
    m_hits.insert(row, read);
    return *read;
}

EverywhereLine EverywhereModel::LineAt(int row) const
{
    const EverywhereText &text = TextAt(row);
    EverywhereLine line;
    line.text = ShownName(text.names);
    line.group = ShownName(text.group);
    line.count = text.hitCount;
    if (!IsHit(row)) {
        line.isText = true;
        return line;
    }
    // Views ask while they paint, and must not see an exception.
    try {
        const EverywhereHit &hit = HitAt(row);
        line.place = PlaceText(hit);
        line.before = hit.before;
        line.hit = hit.hit;
        line.after = hit.after;
    } catch (const std::exception &error) {
        line.before = QString::fromUtf8(error.what());
    }
    return line;
}

int EverywhereModel::NextHit(int row, bool isBackward) const
{
    const int step = isBackward ? -1 : 1;
    for (int next = row + step; next >= 0 && next < m_shown; next += step)
        if (IsHit(next))
            return next;
    return -1;
}

int EverywhereModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_shown;
}

QVariant EverywhereModel::data(const QModelIndex &index, int role) const
{
    if (role != Qt::DisplayRole && role != Qt::AccessibleTextRole)
        return {};
    return checkIndex(index, CheckIndexOption::IndexIsValid) ? SpokenLine(LineAt(index.row())) : QVariant();
}

Qt::ItemFlags EverywhereModel::flags(const QModelIndex &index) const
{
    // The lines of texts are skipped by the keys: a hit's own line names its text.
    if (!index.isValid())
        return Qt::NoItemFlags;
    if (!IsHit(index.row()))
        return Qt::ItemNeverHasChildren;
    return Qt::ItemNeverHasChildren | Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}
