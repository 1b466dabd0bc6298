#include "toolkit/skin/SkinMetrics.h"
#include "toolkit/skin/SkinPainter.h"
#include "toolkit/skin/SkinStyle.h"

#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QLayout>
#include <QStyleOption>
#include <QToolButton>

#include <algorithm>

// Buttons, edits, check boxes and radio buttons.

namespace {

/// Strength of the highlight on a glossy surface: strong under dark text, faint under light text, which must stay
/// readable.
int Shine(const Skin &skin, SkinPart text)
{
    constexpr int strong = 110;
    constexpr int faint = 10;
    if (!skin.isGlossy)
        return 0;
    const QColor ink = QColor::fromRgba(skin.Colour(text));
    return Contrast(ink, Qt::white) > Contrast(ink, Qt::black) ? strong : faint;
}

bool IsBar(const QWidget *widget)
{
    return widget && (widget->inherits("TdxBar") || widget->objectName() == QLatin1StringView("bmMainBar1"));
}

/// The frame of a page or a grid. Without its own frame it gets a line at its top.
bool IsPane(const QWidget *widget)
{
    return widget->inherits("TPanel") || widget->inherits("TcxGrid");
}

} // namespace

bool SkinStyle::DrawButtonPanel(QPainter *painter, const QStyleOption *option, bool isFlat, bool isDefault) const
{
    const bool isEnabled = option->state & State_Enabled;
    const bool isFocused = isEnabled && option->state & State_HasFocus;
    SkinPart part = SkinPart::Button;
    if (option->state & State_Sunken)
        part = SkinPart::ButtonPressed;
    else if (option->state & State_On)
        part = SkinPart::ButtonChecked;
    else if (isEnabled && option->state & State_MouseOver)
        part = SkinPart::ButtonHover;
    const bool hasPanel = !isFlat || part != SkinPart::Button;
    SkinPainter pixels(painter);
    if (hasPanel) {
        SkinPainter::Panel panel{.fill = m_skin.Fill(part),
                                 .frame = Ink(isEnabled && isDefault ? SkinPart::FocusRing : SkinPart::ButtonFrame),
                                 .width = m_skin.lineWidth,
                                 .radius = m_skin.cornerRadius,
                                 .shine = Shine(m_skin, SkinPart::ButtonText)};
        if (!isEnabled) {
            panel.fill = {};
            panel.shine = 0;
            panel.frame = Mixed(Ink(SkinPart::ButtonFrame), Ink(SkinPart::Window), 0.5);
        }
        pixels.DrawPanel(option->rect, panel);
    }
    if (isFocused) {
        // A faint second ring distinguishes the focus from the default button's frame.
        QColor halo = Ink(SkinPart::FocusRing);
        DrawFocus(pixels, option->rect, halo);
        halo.setAlpha(90);
        const int inside = m_skin.focusWidth;
        pixels.Ring(option->rect.adjusted(inside, inside, -inside, -inside), halo, 1,
                    std::max(0, m_skin.cornerRadius - inside));
    }
    return hasPanel && isEnabled;
}

void SkinStyle::DrawFieldPanel(QPainter *painter, const QStyleOption *option) const
{
    const bool isEnabled = option->state & State_Enabled;
    const bool isFocused = isEnabled && option->state & State_HasFocus;
    QColor frame = Ink(isFocused ? SkinPart::FocusRing : SkinPart::Frame);
    if (!isEnabled)
        frame = Mixed(frame, Ink(SkinPart::Window), 0.5);
    SkinPainter(painter).DrawPanel(
        option->rect, {.fill = Ground(SkinPart::Base, option, QPalette::Base),
                       .frame = frame,
                       .width = isFocused ? std::max(m_skin.focusWidth, m_skin.lineWidth) : m_skin.lineWidth,
                       .radius = m_skin.cornerRadius});
}

void SkinStyle::DrawCheck(QPainter *painter, const QStyleOption *option, bool isRadio) const
{
    const bool isEnabled = option->state & State_Enabled;
    const bool isHot = isEnabled && option->state & State_MouseOver;
    const bool isSet = option->state & (State_On | State_NoChange);
    QRect rect(0, 0, SkinIndicator, SkinIndicator);
    rect.moveCenter(option->rect.center());
    QColor ground = Ink(isEnabled ? SkinPart::Base : SkinPart::Window);
    QColor frame = Ink(isHot || isSet ? SkinPart::FocusRing : SkinPart::Frame);
    QColor mark = Ink(SkinPart::Text);
    const QString picture = isRadio ? QStringLiteral("radio") : QStringLiteral("check");
    const bool hasPicture = m_skin.pictures.contains(picture);
    if (!isEnabled) {
        frame = mark = Ink(SkinPart::DisabledText);
    } else if (isSet && !hasPicture) {
        ground = frame;
        mark = Contrast(Ink(SkinPart::Base), ground) > Contrast(mark, ground) ? Ink(SkinPart::Base) : mark;
    } else if (option->state & State_Sunken) {
        ground = Mixed(ground, frame, 0.2);
    }
    {
        SkinPainter pixels(painter);
        pixels.DrawPanel(rect, {.fill = {ground.rgba(), ground.rgba()},
                                .frame = frame,
                                .width = m_skin.lineWidth,
                                .radius = isRadio ? SkinIndicator / 2 : std::min(m_skin.cornerRadius, 4)});
        if (option->state & State_NoChange)
            pixels.Fill(QRect(rect.left() + 4, rect.center().y(), 8, 2), {mark.rgba(), mark.rgba()});
        if (!(option->state & State_On))
            return;
    }
    if (DrawPicture(painter, rect, picture))
        return;
    SkinPainter pixels(painter);
    if (isRadio)
        pixels.Dot(rect, mark, 6);
    else
        pixels.CheckMark(rect, mark);
}

bool SkinStyle::DrawControlPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                                     const QWidget *widget) const
{
    switch (element) {
    case PE_PanelButtonCommand: {
        const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
        const QStyleOptionButton::ButtonFeatures features = button ? button->features : QStyleOptionButton::None;
        DrawButtonPanel(painter, option, features & QStyleOptionButton::Flat,
                        features & QStyleOptionButton::DefaultButton);
        return true;
    }
    case PE_PanelButtonTool:
    case PE_PanelButtonBevel:
        DrawButtonPanel(painter, option, option->state & State_AutoRaise, false);
        return true;
    case PE_FrameDefaultButton:
        return true; // the button draws its own frame
    case PE_PanelLineEdit: {
        const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
        if (frame && frame->lineWidth > 0) {
            DrawFieldPanel(painter, option);
            return true;
        }
        // The edit inside a combo or spin box uses their background.
        const QWidget *parent = widget ? widget->parentWidget() : nullptr;
        if (!qobject_cast<const QComboBox *>(parent) && !qobject_cast<const QAbstractSpinBox *>(parent))
            SkinPainter(painter).Fill(option->rect, Ground(SkinPart::Base, option, QPalette::Base));
        return true;
    }
    case PE_FrameLineEdit:
        return true; // drawn with the panel
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
        DrawCheck(painter, option, false);
        return true;
    case PE_IndicatorRadioButton:
        DrawCheck(painter, option, true);
        return true;
    case PE_FrameGroupBox:
        SkinPainter(painter).DrawPanel(
            option->rect,
            {.fill = {}, .frame = Ink(SkinPart::Frame), .width = m_skin.lineWidth, .radius = m_skin.cornerRadius});
        return true;
    case PE_FrameFocusRect: {
        const bool isSelected = option->state & State_Selected;
        if (isSelected && !m_skin.isHighContrast)
            return true; // the selection shows it
        SkinPainter pixels(painter);
        DrawFocus(pixels, option->rect, Ink(isSelected ? SkinPart::SelectionText : SkinPart::FocusRing));
        return true;
    }
    case PE_IndicatorArrowUp:
    case PE_IndicatorArrowDown:
    case PE_IndicatorArrowLeft:
    case PE_IndicatorArrowRight: {
        const Qt::ArrowType direction = element == PE_IndicatorArrowUp     ? Qt::UpArrow
                                        : element == PE_IndicatorArrowDown ? Qt::DownArrow
                                        : element == PE_IndicatorArrowLeft ? Qt::LeftArrow
                                                                           : Qt::RightArrow;
        const bool isEnabled = option->state & State_Enabled;
        DrawArrow(painter, option->rect, direction, Ink(isEnabled ? SkinPart::ButtonText : SkinPart::DisabledText));
        return true;
    }
    default:
        return false;
    }
}

bool SkinStyle::DrawButtonControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                                  const QWidget *widget) const
{
    switch (element) {
    case CE_PushButton: {
        const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
        if (!button)
            return false;
        drawControl(CE_PushButtonBevel, button, painter, widget);
        QStyleOptionButton label(*button);
        label.rect = subElementRect(SE_PushButtonContents, button, widget);
        const bool isFlat = button->features & QStyleOptionButton::Flat;
        const bool isAtRest = !(button->state & (State_Sunken | State_On | State_MouseOver));
        if (isFlat && isAtRest && button->state & State_Enabled)
            label.palette.setColor(QPalette::ButtonText, label.palette.color(QPalette::WindowText));
        drawControl(CE_PushButtonLabel, &label, painter, widget);
        return true;
    }
    case CE_ComboBoxLabel: {
        const auto *combo = qstyleoption_cast<const QStyleOptionComboBox *>(option);
        if (!combo)
            return false;
        const bool isEnabled = combo->state & State_Enabled;
        QRect rect = subControlRect(CC_ComboBox, combo, SC_ComboBoxEditField, widget);
        painter->save();
        painter->setClipRect(rect, Qt::IntersectClip);
        if (!combo->currentIcon.isNull()) {
            QRect place = rect;
            place.setWidth(combo->iconSize.width() + 4);
            place = visualRect(combo->direction, rect, place);
            combo->currentIcon.paint(painter, place, Qt::AlignCenter, isEnabled ? QIcon::Normal : QIcon::Disabled);
            const int taken = place.width() + 2;
            rect.adjust(combo->direction == Qt::RightToLeft ? 0 : taken, 0,
                        combo->direction == Qt::RightToLeft ? -taken : 0, 0);
        }
        if (!combo->editable) {
            const QString text = combo->fontMetrics.elidedText(combo->currentText, Qt::ElideRight, rect.width() - 2);
            drawItemText(painter, rect.adjusted(1, 0, -1, 0),
                         int(visualAlignment(combo->direction, Qt::AlignLeft)) | Qt::AlignVCenter, combo->palette,
                         isEnabled, text, QPalette::ButtonText);
        }
        painter->restore();
        return true;
    }
    case CE_ShapedFrame: {
        const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
        if (!frame)
            return false;
        SkinPainter pixels(painter);
        if (IsBar(widget)) {
            pixels.DrawPanel(
                option->rect,
                {.fill = m_skin.Fill(SkinPart::Bar), .frame = {}, .shine = Shine(m_skin, SkinPart::WindowText)});
            pixels.EdgeLine(option->rect, Qt::BottomEdge, Ink(SkinPart::BarLine));
            return true;
        }
        if (frame->frameShape == QFrame::NoFrame && widget) {
            // A pane with margins of one pixel leaves room for a frame.
            if (IsPane(widget) && widget->layout() && widget->layout()->contentsMargins() == QMargins(1, 1, 1, 1))
                pixels.Ring(option->rect, Ink(SkinPart::Frame), 1, 0);
            for (const QObject *object : widget->children()) {
                const auto *child = qobject_cast<const QWidget *>(object);
                const bool isShown = child && child->isVisible() && child->y() > 0;
                if (isShown && (IsPane(child) || qobject_cast<const QAbstractItemView *>(child)))
                    pixels.EdgeLine(child->geometry().translated(0, -1), Qt::TopEdge, Ink(SkinPart::BarLine));
            }
            return true;
        }
        if (frame->frameShape != QFrame::HLine && frame->frameShape != QFrame::VLine)
            return false;
        const QPoint centre = option->rect.center();
        const bool isUpright = frame->frameShape == QFrame::VLine;
        pixels.EdgeLine(isUpright ? QRect(centre.x(), option->rect.top() + 2, 1, option->rect.height() - 4)
                                  : QRect(option->rect.left(), centre.y(), option->rect.width(), 1),
                        isUpright ? Qt::LeftEdge : Qt::TopEdge, Ink(SkinPart::BarLine));
        return true;
    }
    default:
        return false;
    }
}

void SkinStyle::DrawToolButton(const QStyleOptionToolButton &option, QPainter *painter, const QWidget *widget) const
{
    const bool isEnabled = option.state & State_Enabled;
    const bool isSplit = option.features & QStyleOptionToolButton::MenuButtonPopup;
    QStyleOptionToolButton button(option);
    if (option.activeSubControls & SC_ToolButtonMenu)
        button.state |= State_Sunken;
    const bool hasPanel = DrawButtonPanel(painter, &button, option.state & State_AutoRaise, false);
    const QColor ink = isEnabled ? option.palette.color(hasPanel ? QPalette::ButtonText : QPalette::WindowText)
                                 : Ink(SkinPart::DisabledText);
    QStyleOptionToolButton label(option);
    label.palette.setColor(QPalette::ButtonText, ink);
    label.state &= ~State_Sunken; // would move the text
    label.rect = subControlRect(CC_ToolButton, &option, SC_ToolButton, widget).adjusted(2, 2, -2, -2);
    if (isSplit) {
        const QRect menu = subControlRect(CC_ToolButton, &option, SC_ToolButtonMenu, widget);
        if (hasPanel)
            SkinPainter(painter).EdgeLine(menu.adjusted(0, 4, 0, -4), Qt::LeftEdge, Ink(SkinPart::ButtonFrame));
        DrawArrow(painter, menu, Qt::DownArrow, ink);
    } else if (option.features & QStyleOptionToolButton::HasMenu && option.toolButtonStyle != Qt::ToolButtonIconOnly) {
        QRect arrow = label.rect;
        arrow.setLeft(arrow.right() - SkinMenuRoom - 4);
        arrow = visualRect(option.direction, option.rect, arrow);
        label.rect = visualRect(option.direction, option.rect, label.rect.adjusted(0, 0, -SkinMenuRoom - 4, 0));
        DrawArrow(painter, arrow, Qt::DownArrow, ink);
    }
    drawControl(CE_ToolButtonLabel, &label, painter, widget);
}

void SkinStyle::DrawCombo(const QStyleOptionComboBox &option, QPainter *painter, const QWidget *widget) const
{
    const bool isEnabled = option.state & State_Enabled;
    const QRect arrow = subControlRect(CC_ComboBox, &option, SC_ComboBoxArrow, widget);
    if (option.frame && option.editable) {
        DrawFieldPanel(painter, &option);
    } else if (option.frame) {
        QStyleOption panel(option);
        // Qt draws a combo with an open list as a pressed button.
        panel.state &= ~State_On;
        if (option.state & State_On)
            panel.state |= State_Sunken;
        DrawButtonPanel(painter, &panel, false, false);
    }
    const QColor ink =
        isEnabled ? Ink(option.editable ? SkinPart::Text : SkinPart::ButtonText) : Ink(SkinPart::DisabledText);
    if (option.subControls & SC_ComboBoxArrow)
        DrawArrow(painter, arrow, Qt::DownArrow, ink);
}

void SkinStyle::DrawSpin(const QStyleOptionSpinBox &option, QPainter *painter, const QWidget *widget) const
{
    if (option.frame)
        DrawFieldPanel(painter, &option);
    if (option.buttonSymbols == QAbstractSpinBox::NoButtons)
        return;
    const std::pair<SubControl, QAbstractSpinBox::StepEnabledFlag> steps[] = {
        {SC_SpinBoxUp, QAbstractSpinBox::StepUpEnabled}, {SC_SpinBoxDown, QAbstractSpinBox::StepDownEnabled}};
    for (const auto &[part, step] : steps) {
        const bool isUp = part == SC_SpinBoxUp;
        const bool isEnabled = option.state & State_Enabled && option.stepEnabled & step;
        const bool isActive = option.activeSubControls == part;
        const QRect rect = subControlRect(CC_SpinBox, &option, part, widget);
        const int room = std::max(m_skin.lineWidth, m_skin.focusWidth);
        const QRect inside = rect.adjusted(0, isUp ? room : 0, -room, isUp ? 0 : -room);
        QColor ink = Ink(option.state & State_Enabled ? SkinPart::Text : SkinPart::DisabledText);
        if (isEnabled && isActive && option.state & (State_Sunken | State_MouseOver)) {
            const bool isDown = option.state & State_Sunken;
            SkinPainter(painter).Fill(inside, m_skin.Fill(isDown ? SkinPart::ButtonPressed : SkinPart::ButtonHover));
            ink = Ink(SkinPart::ButtonText);
        } else if (!isEnabled) {
            ink = Ink(SkinPart::DisabledText);
        }
        DrawArrow(painter, inside, isUp ? Qt::UpArrow : Qt::DownArrow, ink);
    }
}
