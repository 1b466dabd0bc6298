#include "toolkit/skin/SkinMetrics.h"
#include "toolkit/skin/SkinPainter.h"
#include "toolkit/skin/SkinStyle.h"

#include <QAbstractScrollArea>
#include <QListView>
#include <QStyleOption>
#include <QTableView>

#include <algorithm>

// Lists, trees, grids, headers, tabs, scroll bars and splitters.

namespace {

/// Qt highlights only the cell under the mouse; here rows are selected, so the whole row is.
/// Below all rows the mouse has no index.
bool IsRowUnderMouse(const QTableView &table, const QModelIndex &index)
{
    const QWidget *viewport = table.viewport();
    return index.isValid() && viewport->underMouse() &&
           table.rowAt(viewport->mapFromGlobal(QCursor::pos()).y()) == index.row();
}

} // namespace

void SkinStyle::DrawRow(const QStyleOptionViewItem &option, QPainter *painter, const QWidget *widget) const
{
    const bool isEnabled = option.state & State_Enabled;
    const auto *table = qobject_cast<const QTableView *>(widget);
    const bool isRowTable = table && table->selectionBehavior() == QTableView::SelectRows;
    const bool isHot =
        isEnabled && (isRowTable ? IsRowUnderMouse(*table, option.index) : bool(option.state & State_MouseOver));
    const bool isDropDown = widget && widget->inherits("QComboBoxListView");
    SkinPainter pixels(painter);
    if (option.state & State_Selected) {
        const bool isActive = isEnabled && option.state & State_Active;
        if (isDropDown)
            pixels.DrawPanel(option.rect.adjusted(1, 0, -1, 0), {.fill = m_skin.Fill(SkinPart::MenuSelection),
                                                                 .frame = {},
                                                                 .radius = std::min(m_skin.cornerRadius, 6)});
        else
            pixels.Fill(option.rect, m_skin.Fill(isActive ? SkinPart::Selection : SkinPart::InactiveSelection));
    } else if (isHot && !isDropDown) {
        pixels.Fill(option.rect, m_skin.Fill(SkinPart::RowHover));
    } else if (option.features & QStyleOptionViewItem::Alternate) {
        pixels.Fill(option.rect, Ground(SkinPart::AlternateBase, &option, QPalette::AlternateBase));
    }
}

void SkinStyle::DrawBranch(const QStyleOption &option, QPainter *painter) const
{
    if (!(option.state & State_Children))
        return;
    const bool isOpen = option.state & State_Open;
    QRect square(0, 0, 16, 16);
    square.moveCenter(option.rect.center());
    if (DrawPicture(painter, square, isOpen ? QStringLiteral("branchOpen") : QStringLiteral("branchClosed")))
        return;
    QColor ink = Ink(SkinPart::Text);
    if (!(option.state & State_Enabled))
        ink = Ink(SkinPart::DisabledText);
    else if (option.state & State_Selected)
        ink = Ink(SkinPart::SelectionText);
    else if (!m_skin.isHighContrast)
        ink = Mixed(ink, Ink(SkinPart::Base), 0.25);
    const Qt::ArrowType closed = option.direction == Qt::RightToLeft ? Qt::LeftArrow : Qt::RightArrow;
    SkinPainter(painter).Chevron(option.rect, isOpen ? Qt::DownArrow : closed, ink);
}

bool SkinStyle::DrawViewPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                                  const QWidget *widget) const
{
    const auto *row = qstyleoption_cast<const QStyleOptionViewItem *>(option);
    switch (element) {
    case PE_PanelItemViewRow:
        if (row)
            DrawRow(*row, painter, widget);
        return true;
    case PE_PanelItemViewItem:
        if (!row)
            return true;
        // The row's background is drawn already; a cell may have its own brush.
        if (row->backgroundBrush.style() != Qt::NoBrush && !(row->state & State_Selected))
            painter->fillRect(row->rect, row->backgroundBrush);
        else if (qobject_cast<const QListView *>(widget) || row->state & State_Selected)
            DrawRow(*row, painter, widget);
        return true;
    case PE_IndicatorBranch:
        DrawBranch(*option, painter);
        return true;
    case PE_Frame:
    case PE_FrameWindow: {
        const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
        if (!frame || frame->lineWidth == 0)
            return true;
        if (qobject_cast<const QAbstractScrollArea *>(widget)) {
            QStyleOption field(*option);
            if (widget->hasFocus())
                field.state |= State_HasFocus;
            DrawFieldPanel(painter, &field);
            return true;
        }
        const bool isDropDown = widget && widget->inherits("QComboBoxPrivateContainer");
        SkinPainter(painter).Ring(option->rect, Ink(isDropDown ? SkinPart::MenuFrame : SkinPart::Frame),
                                  std::min(m_skin.lineWidth, 2), 0);
        return true;
    }
    case PE_FrameTabWidget:
        SkinPainter(painter).Ring(option->rect, Ink(SkinPart::Frame), m_skin.lineWidth, 0);
        return true;
    case PE_FrameTabBarBase:
        SkinPainter(painter).EdgeLine(option->rect, Qt::BottomEdge, Ink(SkinPart::Frame));
        return true;
    case PE_PanelScrollAreaCorner:
        SkinPainter(painter).Fill(option->rect, m_skin.Fill(SkinPart::ScrollTrack));
        return true;
    case PE_IndicatorHeaderArrow: {
        const auto *header = qstyleoption_cast<const QStyleOptionHeader *>(option);
        if (header && header->sortIndicator != QStyleOptionHeader::None)
            DrawArrow(painter, option->rect,
                      header->sortIndicator == QStyleOptionHeader::SortUp ? Qt::UpArrow : Qt::DownArrow,
                      Ink(SkinPart::HeaderText));
        return true;
    }
    default:
        return false;
    }
}

bool SkinStyle::DrawViewControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                                const QWidget *widget) const
{
    switch (element) {
    case CE_HeaderSection:
    case CE_HeaderEmptyArea: {
        const bool isSection = element == CE_HeaderSection;
        const bool isHot = isSection && option->state & State_Enabled && option->state & State_MouseOver;
        SkinPainter pixels(painter);
        pixels.Fill(option->rect, m_skin.Fill(isHot ? SkinPart::HeaderHover : SkinPart::Header));
        const auto *header = qstyleoption_cast<const QStyleOptionHeader *>(option);
        const bool isUpright = header && header->orientation == Qt::Vertical;
        if (isSection)
            pixels.EdgeLine(option->rect, isUpright ? Qt::BottomEdge : Qt::RightEdge, Ink(SkinPart::GridLine));
        pixels.EdgeLine(option->rect, isUpright ? Qt::RightEdge : Qt::BottomEdge, Ink(SkinPart::BarLine));
        return true;
    }
    case CE_HeaderLabel: {
        const auto *header = qstyleoption_cast<const QStyleOptionHeader *>(option);
        if (!header)
            return false;
        QStyleOptionHeader label(*header);
        label.palette.setColor(QPalette::Active, QPalette::ButtonText, Ink(SkinPart::HeaderText));
        label.palette.setColor(QPalette::Inactive, QPalette::ButtonText, Ink(SkinPart::HeaderText));
        QProxyStyle::drawControl(element, &label, painter, widget);
        return true;
    }
    case CE_Splitter: {
        const bool isUpright = option->state & State_Horizontal;
        QRect line = option->rect;
        if (isUpright && line.width() > 1)
            line = QRect(line.center().x(), line.top(), 1, line.height());
        else if (!isUpright && line.height() > 1)
            line = QRect(line.left(), line.center().y(), line.width(), 1);
        SkinPainter(painter).Fill(line, m_skin.Fill(SkinPart::Splitter));
        return true;
    }
    case CE_ProgressBar:
        if (const auto *bar = qstyleoption_cast<const QStyleOptionProgressBar *>(option))
            DrawProgress(*bar, painter, widget);
        return true;
    case CE_TabBarTabShape:
        if (const auto *tab = qstyleoption_cast<const QStyleOptionTab *>(option))
            DrawTab(*tab, painter);
        return true;
    case CE_SizeGrip: {
        SkinPainter pixels(painter);
        const QColor ink = Ink(SkinPart::Frame);
        const auto *grip = qstyleoption_cast<const QStyleOptionSizeGrip *>(option);
        const bool isLeft = grip && (grip->corner == Qt::BottomLeftCorner || grip->corner == Qt::TopLeftCorner);
        for (int row = 0; row < 3; ++row) {
            for (int column = 0; column <= row; ++column) {
                QRect dot(option->rect.right() - 3 - 4 * column, option->rect.bottom() - 3 - 4 * (2 - row), 2, 2);
                if (isLeft)
                    dot.moveLeft(option->rect.left() + 2 + 4 * column);
                pixels.Fill(dot, {ink.rgba(), ink.rgba()});
            }
        }
        return true;
    }
    default:
        return false;
    }
}

void SkinStyle::DrawTab(const QStyleOptionTab &option, QPainter *painter) const
{
    const bool isActive = option.state & State_Selected;
    const bool isHot = option.state & State_Enabled && option.state & State_MouseOver;
    const bool isTop = option.shape == QTabBar::RoundedNorth || option.shape == QTabBar::TriangularNorth;
    const bool isBottom = option.shape == QTabBar::RoundedSouth || option.shape == QTabBar::TriangularSouth;
    QRect rect = option.rect;
    SkinFill fill = m_skin.Fill(isActive ? SkinPart::TabActive : SkinPart::Tab);
    SkinPainter pixels(painter);
    const bool isLast = option.position == QStyleOptionTab::End || option.position == QStyleOptionTab::OnlyOneTab;
    const int shared = isActive || isLast ? 0 : m_skin.lineWidth; // shared with the next tab
    // The active tab opens into the page; the others are a little lower, behind its edge.
    if (isTop)
        rect.adjust(0, isActive ? 0 : 2, shared, isActive ? m_skin.lineWidth : 0);
    else if (isBottom)
        rect.adjust(0, isActive ? -m_skin.lineWidth : 0, shared, isActive ? 0 : -2);
    if (isHot && !isActive)
        fill = m_skin.Fill(SkinPart::TabActive);
    painter->setClipRect(pixels.Pixels(option.rect), Qt::IntersectClip);
    pixels.DrawPanel(rect, {.fill = fill,
                            .frame = Ink(SkinPart::Frame),
                            .width = m_skin.lineWidth,
                            .radius = std::min(m_skin.cornerRadius, 8),
                            .round = isTop      ? SkinPainter::Top
                                     : isBottom ? SkinPainter::Bottom
                                                : SkinPainter::AllSides});
    if (isActive && (isTop || isBottom)) {
        const QColor ink = Ink(SkinPart::FocusRing);
        const int inset = m_skin.cornerRadius;
        pixels.Fill(QRect(rect.left() + inset, isTop ? rect.top() : rect.bottom() - 1, rect.width() - 2 * inset, 2),
                    {ink.rgba(), ink.rgba()});
    }
}

void SkinStyle::DrawScrollBar(const QStyleOptionSlider &option, QPainter *painter, const QWidget *widget) const
{
    SkinPainter pixels(painter);
    // With nothing to scroll a bar is only background.
    const bool isIdle = option.maximum <= option.minimum || !(option.state & State_Enabled);
    pixels.Fill(option.rect, m_skin.Fill(isIdle ? SkinPart::Base : SkinPart::ScrollTrack));
    if (isIdle)
        return;
    const bool isHeld = option.state & State_Sunken && option.activeSubControls & SC_ScrollBarSlider;
    const bool isHot = isHeld || (option.state & State_MouseOver && option.activeSubControls & SC_ScrollBarSlider);
    const bool isUpright = option.orientation == Qt::Vertical;
    const int inset = isHot || m_skin.isHighContrast ? 2 : 3;
    const QRect slider = subControlRect(CC_ScrollBar, &option, SC_ScrollBarSlider, widget);
    const QRect thumb = isUpright ? slider.adjusted(inset, 2, -inset, -2) : slider.adjusted(2, inset, -2, -inset);
    const int radius = m_skin.cornerRadius == 0 ? 0 : (SkinScrollExtent - 2 * inset) / 2;
    pixels.DrawPanel(thumb, {.fill = m_skin.Fill(isHot ? SkinPart::ScrollThumbHover : SkinPart::ScrollThumb),
                             .frame = {},
                             .radius = radius});
}

void SkinStyle::DrawProgress(const QStyleOptionProgressBar &option, QPainter *painter, const QWidget *) const
{
    const int line = m_skin.lineWidth;
    const int radius = std::min(m_skin.cornerRadius, option.rect.height() / 2);
    const QRect inside = option.rect.adjusted(line, line, -line, -line);
    const bool isUpright = !(option.state & State_Horizontal);
    const qint64 range = qint64(option.maximum) - option.minimum;
    QRect done = inside;
    if (range > 0) {
        const qint64 part = std::clamp<qint64>(qint64(option.progress) - option.minimum, 0, range);
        if (isUpright)
            done.setTop(inside.bottom() + 1 - static_cast<int>(part * inside.height() / range));
        else
            done.setWidth(static_cast<int>(part * inside.width() / range));
        if (option.invertedAppearance != (option.direction == Qt::RightToLeft) && !isUpright)
            done.moveRight(inside.right());
    }
    {
        SkinPainter pixels(painter);
        pixels.DrawPanel(
            option.rect,
            {.fill = m_skin.Fill(SkinPart::Base), .frame = Ink(SkinPart::Frame), .width = line, .radius = radius});
        if (!done.isEmpty())
            pixels.DrawPanel(
                done, {.fill = m_skin.Fill(SkinPart::Progress), .frame = {}, .radius = std::max(0, radius - line)});
    }
    if (!option.textVisible || option.text.isEmpty())
        return;
    // The text crosses both backgrounds, with a readable colour on each.
    const QColor ground = Ink(SkinPart::Progress);
    QColor over = Ink(SkinPart::Text);
    for (const SkinPart part : {SkinPart::Base, SkinPart::SelectionText})
        over = Contrast(Ink(part), ground) > Contrast(over, ground) ? Ink(part) : over;
    const bool isEnabled = option.state & State_Enabled;
    const QRegion whole(option.rect);
    const std::pair<QRegion, QColor> sides[] = {
        {QRegion(done), over}, {whole - done, Ink(isEnabled ? SkinPart::Text : SkinPart::DisabledText)}};
    for (const auto &[region, ink] : sides) {
        painter->save();
        painter->setClipRegion(region, Qt::IntersectClip);
        painter->setPen(ink);
        painter->drawText(option.rect, Qt::AlignCenter | Qt::TextSingleLine, option.text);
        painter->restore();
    }
}
