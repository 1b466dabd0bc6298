#include "toolkit/skin/SkinMetrics.h"
#include "toolkit/skin/SkinPainter.h"
#include "toolkit/skin/SkinStyle.h"

#include <QAction>
#include <QMenu>
#include <QPainterPath>
#include <QStyleOption>

#include <algorithm>

// Menus, tool tips, and the pictures of message boxes.

namespace {

bool HasSide(const QWidget *menu)
{
    const QList<QAction *> actions = menu ? menu->actions() : QList<QAction *>();
    return std::any_of(actions.begin(), actions.end(), [](const QAction *action) {
        return action->isVisible() &&
               (action->isCheckable() || (!action->icon().isNull() && action->isIconVisibleInMenu()));
    });
}

/// A sign in a disc of 32 units; no letter, because a style has no font.
void DrawSign(QPainter &painter, QStyle::StandardPixmap picture, const QColor &ground, const QColor &ink)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawEllipse(QRectF(2, 2, 28, 28));
    painter.setBrush(ink);
    QPainterPath path;
    if (picture == QStyle::SP_MessageBoxQuestion) {
        path.moveTo(12, 12.5);
        path.cubicTo(12, 7, 20, 7, 20, 12.2);
        path.cubicTo(20, 15.5, 16, 15.5, 16, 19);
        painter.drawEllipse(QPointF(16, 23.6), 1.7, 1.7);
    } else if (picture == QStyle::SP_MessageBoxInformation) {
        path.moveTo(16, 14.5);
        path.lineTo(16, 23);
        painter.drawEllipse(QPointF(16, 9.6), 1.8, 1.8);
    } else if (picture == QStyle::SP_MessageBoxWarning) {
        path.moveTo(16, 8.5);
        path.lineTo(16, 17.5);
        painter.drawEllipse(QPointF(16, 22.8), 1.8, 1.8);
    } else {
        path.moveTo(11.5, 11.5);
        path.lineTo(20.5, 20.5);
        path.moveTo(20.5, 11.5);
        path.lineTo(11.5, 20.5);
    }
    painter.strokePath(path, QPen(ink, 2.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}

} // namespace

QIcon SkinStyle::standardIcon(StandardPixmap picture, const QStyleOption *option, const QWidget *widget) const
{
    if (picture < SP_MessageBoxInformation || picture > SP_MessageBoxQuestion)
        return QProxyStyle::standardIcon(picture, option, widget);
    const QColor ground = Ink(SkinPart::FocusRing);
    const bool isWhite = Contrast(Qt::white, ground) > Contrast(Qt::black, ground);
    QIcon icon;
    for (const int side : {32, 48, 64, 96}) {
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.scale(side / 32.0, side / 32.0);
        DrawSign(painter, picture, ground, isWhite ? Qt::white : Qt::black);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

bool SkinStyle::DrawMenuPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                                  const QWidget *widget) const
{
    switch (element) {
    case PE_PanelMenu: {
        SkinPainter pixels(painter);
        const SkinFill frame{m_skin.Colour(SkinPart::MenuFrame), m_skin.Colour(SkinPart::MenuFrame)};
        pixels.Fill(option->rect, frame);
        const int line = m_skin.lineWidth;
        const int radius = std::max(0, std::min(m_skin.cornerRadius, SkinMaskRadius) - line);
        const QRect inside = option->rect.adjusted(line, line, -line, -line);
        pixels.DrawPanel(inside, {.fill = m_skin.Fill(SkinPart::Menu), .frame = {}, .radius = radius});
        const bool hasStrip = m_skin.Fill(SkinPart::MenuSide) != m_skin.Fill(SkinPart::Menu);
        if (hasStrip && qobject_cast<const QMenu *>(widget) && HasSide(widget)) {
            const int room = std::max(radius - 2, 0); // clear of the round corners
            QRect strip = inside.adjusted(0, room, 0, -room);
            strip.setWidth(SkinMenuEdge - line + SkinMenuSide);
            pixels.Fill(visualRect(option->direction, option->rect, strip), m_skin.Fill(SkinPart::MenuSide));
        }
        return true;
    }
    case PE_FrameMenu:
        return true; // came with the panel
    case PE_PanelTipLabel: {
        SkinPainter pixels(painter);
        const QColor frame = Ink(SkinPart::ToolTipFrame);
        const int line = m_skin.lineWidth;
        pixels.Fill(option->rect, {frame.rgba(), frame.rgba()});
        pixels.DrawPanel(option->rect.adjusted(line, line, -line, -line),
                         {.fill = m_skin.Fill(SkinPart::ToolTip),
                          .frame = {},
                          .radius = std::max(0, std::min(m_skin.cornerRadius, SkinMaskRadius) - line)});
        return true;
    }
    default:
        return false;
    }
}

bool SkinStyle::DrawMenuControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                                const QWidget *widget) const
{
    switch (element) {
    case CE_MenuItem:
        if (const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option))
            DrawMenuItem(*item, painter, widget);
        return true;
    case CE_MenuEmptyArea:
    case CE_MenuVMargin:
    case CE_MenuHMargin:
        return true; // came with the panel
    case CE_MenuScroller:
        SkinPainter(painter).Fill(option->rect, m_skin.Fill(SkinPart::Menu));
        DrawArrow(painter, option->rect, option->state & State_DownArrow ? Qt::DownArrow : Qt::UpArrow,
                  Ink(SkinPart::MenuText));
        return true;
    default:
        return false;
    }
}

void SkinStyle::DrawMenuItem(const QStyleOptionMenuItem &option, QPainter *painter, const QWidget *widget) const
{
    const bool isEnabled = option.state & State_Enabled;
    const bool isChosen = isEnabled && option.state & State_Selected;
    const bool hasSide = option.maxIconWidth > 0 || option.menuHasCheckableItems;
    const int left = hasSide ? SkinMenuSide : 0;
    const auto place = [&](const QRect &rect) { return visualRect(option.direction, option.rect, rect); };
    const QRect row = option.rect;
    const QRect textRect(row.left() + left + SkinMenuRoom, row.top(), row.width() - left - 2 * SkinMenuRoom,
                         row.height());
    if (option.menuItemType == QStyleOptionMenuItem::Separator && option.text.isEmpty()) {
        constexpr double faint = 0.4; // a separator, not a border
        const QRect line(textRect.left(), row.center().y(), row.right() + 1 - textRect.left(), 1);
        SkinPainter(painter).EdgeLine(place(line), Qt::TopEdge,
                                      Mixed(Ink(SkinPart::Menu), Ink(SkinPart::MenuFrame), faint));
        return;
    }
    if (isChosen)
        SkinPainter(painter).DrawPanel(row, {.fill = m_skin.Fill(SkinPart::MenuSelection),
                                             .frame = {},
                                             .radius = std::min(m_skin.cornerRadius, SkinMaskRadius),
                                             .shine = 0});
    QColor ink = Ink(isChosen ? SkinPart::MenuSelectionText : SkinPart::MenuText);
    if (!isEnabled)
        ink = Ink(SkinPart::DisabledText);

    const QRect side = place(QRect(row.left(), row.top(), left, row.height()));
    const bool isTicked = option.checkType != QStyleOptionMenuItem::NotCheckable && option.checked;
    if (!option.icon.isNull()) {
        const int extent = pixelMetric(PM_SmallIconSize, &option, widget);
        QRect square(0, 0, extent, extent);
        square.moveCenter(side.center());
        if (isTicked)
            SkinPainter(painter).DrawPanel(square.adjusted(-3, -3, 3, 3), {.fill = m_skin.Fill(SkinPart::ButtonChecked),
                                                                           .frame = Ink(SkinPart::ButtonFrame),
                                                                           .width = m_skin.lineWidth,
                                                                           .radius = m_skin.cornerRadius});
        // The picture of a checked item has its own background.
        const QIcon::Mode mode = !isEnabled ? QIcon::Disabled : isChosen && !isTicked ? QIcon::Selected : QIcon::Normal;
        option.icon.paint(painter, square, Qt::AlignCenter, mode, isTicked ? QIcon::On : QIcon::Off);
    } else if (isTicked) {
        const bool isRadio = option.checkType == QStyleOptionMenuItem::Exclusive;
        QRect square(0, 0, 16, 16);
        square.moveCenter(side.center());
        if (!DrawPicture(painter, square, isRadio ? QStringLiteral("radio") : QStringLiteral("check"))) {
            SkinPainter pixels(painter);
            if (isRadio)
                pixels.Dot(square, ink, 6);
            else
                pixels.CheckMark(square, ink);
        }
    }

    const qsizetype tab = option.text.indexOf(QLatin1Char('\t'));
    const QString caption = tab < 0 ? option.text : option.text.left(tab);
    int flags = Qt::AlignVCenter | Qt::TextShowMnemonic | Qt::TextDontClip | Qt::TextSingleLine;
    if (!styleHint(SH_UnderlineShortcut, &option, widget, nullptr))
        flags |= Qt::TextHideMnemonic;
    painter->save();
    painter->setFont(option.font);
    painter->setPen(ink);
    painter->drawText(place(textRect), flags | int(visualAlignment(option.direction, Qt::AlignLeft)), caption);
    const QRect shortcut = textRect.adjusted(0, 0, -SkinMenuRoom, 0);
    if (tab >= 0)
        painter->drawText(place(shortcut), flags | int(visualAlignment(option.direction, Qt::AlignRight)),
                          option.text.mid(tab + 1));
    painter->restore();
    if (option.menuItemType == QStyleOptionMenuItem::SubMenu) {
        const QRect arrow(row.right() - SkinMenuRoom - 8, row.top(), 16, row.height());
        SkinPainter(painter).Chevron(place(arrow), option.direction == Qt::RightToLeft ? Qt::LeftArrow : Qt::RightArrow,
                                     ink);
    }
}
