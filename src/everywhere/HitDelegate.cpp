#include "everywhere/HitDelegate.h"

#include "everywhere/EverywhereModel.h"
#include "toolkit/bound/CellHint.h"
#include "toolkit/program/Fonts.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int sideGap = 6; // pixels at 96 dpi, as the next ones
constexpr int lineGap = 3;
constexpr int indent = 12;
constexpr int placeWidth = 120;
constexpr int beforeShare = 40; ///< per cent of the room for words that those before a hit have

/// Draws texts one after the other on one line, in what is left of its width.
class LinePainter
{
public:
    LinePainter(QPainter &painter, const QRect &room) : m_painter(painter), m_room(room) {}

    int Width() const { return m_room.width(); }
    void Skip(int pixels) { m_room.setLeft(m_room.left() + pixels); }
    void Draw(const QString &text, const QFont &font, Qt::TextElideMode elide = Qt::ElideRight)
    {
        const QFontMetrics metrics(font);
        Skip(DrawIn(m_room, text, metrics, font, elide, Qt::AlignLeft));
    }
    /// In so much of the width, at its right end.
    void DrawBack(const QString &text, const QFont &font, int width)
    {
        QRect room = m_room;
        room.setWidth(width);
        DrawIn(room, text, QFontMetrics(font), font, Qt::ElideLeft, Qt::AlignRight);
        Skip(width);
    }
    /// At the right end of all.
    void DrawLast(const QString &text, const QFont &font)
    {
        const int width = DrawIn(m_room, text, QFontMetrics(font), font, Qt::ElideLeft, Qt::AlignRight);
        m_room.setRight(m_room.right() - width);
    }

private:
    int DrawIn(const QRect &room, const QString &text, const QFontMetrics &metrics, const QFont &font,
               Qt::TextElideMode elide, Qt::AlignmentFlag align)
    {
        const QString shown = metrics.elidedText(text, elide, std::max(room.width(), 0));
        m_painter.setFont(font);
        // The blank before a hit counts.
        const int flags =
            int(Qt::TextSingleLine) | int(Qt::TextIncludeTrailingSpaces) | int(Qt::AlignVCenter) | int(align);
        m_painter.drawText(room, flags, shown);
        return metrics.horizontalAdvance(shown);
    }

    QPainter &m_painter;
    QRect m_room;
};

} // namespace

QSize HitDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    return {0, option.fontMetrics.height() + 2 * GrownPixels(lineGap)};
}

void HitDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const auto *model = qobject_cast<const EverywhereModel *>(index.model());
    if (!model)
        return;
    const EverywhereLine line = model->LineAt(index.row());
    QStyleOptionViewItem item(option);
    item.state |= QStyle::State_Enabled; // that of a text is not, but must be readable
    if (line.isText)
        item.state &= ~QStyle::State_MouseOver; // nothing to press
    const QStyle *style = item.widget->style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &item, painter, item.widget);

    const bool isSelected = item.state.testFlag(QStyle::State_Selected);
    QFont bold(item.font);
    bold.setBold(true);
    painter->save();
    const auto group = item.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
    painter->setPen(item.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text));
    LinePainter words(*painter, item.rect.adjusted(GrownPixels(sideGap), 0, -GrownPixels(sideGap), 0));
    if (line.isText) {
        words.DrawLast(QLocale().toString(line.count), bold);
        words.Draw(line.text, bold);
        if (!line.group.isEmpty())
            words.Draw(u"   ·   "_s + line.group, item.font);
    } else {
        words.Skip(GrownPixels(indent));
        const int place = std::min(GrownPixels(placeWidth), words.Width() / 4);
        LinePainter label(*painter, QRect(item.rect.left() + GrownPixels(sideGap) + GrownPixels(indent),
                                          item.rect.top(), place - GrownPixels(sideGap), item.rect.height()));
        label.Draw(line.place, item.font);
        words.Skip(place);
        words.DrawBack(line.before, item.font, words.Width() * beforeShare / 100);
        words.Draw(line.hit, bold);
        words.Draw(line.after, item.font);
    }
    painter->restore();
}

bool HitDelegate::helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                            const QModelIndex &index)
{
    if (event->type() != QEvent::ToolTip)
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    const auto *model = qobject_cast<const EverywhereModel *>(index.model());
    const QString text = model ? SpokenLine(model->LineAt(index.row())) : QString();
    ShowCellHint(*event, *view, index, !text.isEmpty(), text);
    return true;
}
