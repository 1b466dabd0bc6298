#include "toolkit/skin/SkinMetrics.h"

#include "toolkit/skin/SkinStyle.h"

#include <QAbstractScrollArea>
#include <QListView>
#include <QRegion>
#include <QSpinBox>
#include <QStyleOption>
#include <QToolButton>

#include <algorithm>
#include <cmath>

namespace {

constexpr int ButtonRoom = 14;
constexpr int LeastButtonWidth = 80;
constexpr int LeastThumb = 28;

QRegion RoundedRegion(const QRect &rect, int radius)
{
    QRegion region = rect.adjusted(0, radius, 0, -radius);
    for (int row = 0; row < radius; ++row) {
        const double height = radius - row - 0.5;
        const int cut = static_cast<int>(radius - std::sqrt(radius * radius - height * height));
        const QRect line(rect.left() + cut, rect.top() + row, rect.width() - 2 * cut, 1);
        region += line;
        region += line.translated(0, rect.height() - 1 - 2 * row);
    }
    return region;
}

QSize ToolButtonSize(const QStyleOptionToolButton &button, const QSize &contents, const QWidget *widget)
{
    const bool hasText = button.toolButtonStyle != Qt::ToolButtonIconOnly && !button.text.isEmpty();
    const QWidget *parent = widget ? widget->parentWidget() : nullptr;
    const bool isOnBar = parent && parent->objectName() == QLatin1StringView("bmMainBar1");
    QSize size = contents + QSize(hasText ? 10 : 6, 6);
    if (isOnBar && button.toolButtonStyle != Qt::ToolButtonIconOnly)
        size += QSize(10, 4);
    else if (isOnBar)
        size += QSize(4, 4);
    const bool isMenuOnly = button.features & QStyleOptionToolButton::HasMenu &&
                            !(button.features & QStyleOptionToolButton::MenuButtonPopup);
    if (hasText && isMenuOnly)
        size.rwidth() += SkinMenuRoom;
    return size.expandedTo({SkinRowHeight, SkinRowHeight});
}

QRect ScrollBarRect(const QStyle &style, const QStyleOptionSlider &bar, QStyle::SubControl part)
{
    const bool isUpright = bar.orientation == Qt::Vertical;
    const int room = isUpright ? bar.rect.height() : bar.rect.width();
    const qint64 range = qint64(bar.maximum) - bar.minimum;
    int thumb = room;
    if (range > 0)
        thumb = std::clamp(static_cast<int>(qint64(bar.pageStep) * room / (range + bar.pageStep)),
                           std::min(LeastThumb, room), room);
    const int from =
        style.sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition, room - thumb, bar.upsideDown);
    int start = 0;
    int length = 0;
    switch (part) {
    case QStyle::SC_ScrollBarGroove:
        length = room;
        break;
    case QStyle::SC_ScrollBarSlider:
        start = from;
        length = thumb;
        break;
    case QStyle::SC_ScrollBarSubPage:
        length = from;
        break;
    case QStyle::SC_ScrollBarAddPage:
        start = from + thumb;
        length = room - start;
        break;
    default: // no arrows
        return {};
    }
    const QRect rect =
        isUpright ? QRect(0, start, bar.rect.width(), length) : QRect(start, 0, length, bar.rect.height());
    return QStyle::visualRect(bar.direction, bar.rect, rect.translated(bar.rect.topLeft()));
}

} // namespace

QRect SkinStyle::subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                                const QWidget *widget) const
{
    const QRect rect = option->rect;
    const QRect arrows(rect.right() + 1 - SkinArrowWidth, rect.top(), SkinArrowWidth, rect.height());
    if (const auto *bar = qstyleoption_cast<const QStyleOptionSlider *>(option); bar && control == CC_ScrollBar)
        return ScrollBarRect(*this, *bar, part);
    if (control == CC_ComboBox && part == SC_ComboBoxArrow)
        return visualRect(option->direction, rect, arrows);
    if (control == CC_ComboBox && part == SC_ComboBoxEditField) {
        // A combo without an edit has nothing between text and arrow, so a long name may come close.
        const auto *combo = qstyleoption_cast<const QStyleOptionComboBox *>(option);
        const int arrow = combo && combo->editable ? SkinArrowWidth : SkinArrowWidth - 5;
        return visualRect(option->direction, rect,
                          rect.adjusted(SkinFieldRoom + 2, SkinFieldRoom, -arrow, -SkinFieldRoom));
    }
    const auto *spin = qstyleoption_cast<const QStyleOptionSpinBox *>(option);
    if (spin && control == CC_SpinBox) {
        const bool hasButtons = spin->buttonSymbols != QAbstractSpinBox::NoButtons;
        const int half = rect.height() / 2;
        QRect found = rect;
        if (part == SC_SpinBoxEditField)
            found = rect.adjusted(SkinFieldRoom, SkinFieldRoom, hasButtons ? -SkinArrowWidth : -SkinFieldRoom,
                                  -SkinFieldRoom);
        else if (part == SC_SpinBoxUp)
            found = hasButtons ? arrows.adjusted(0, 0, 0, -half) : QRect();
        else if (part == SC_SpinBoxDown)
            found = hasButtons ? arrows.adjusted(0, rect.height() - half, 0, 0) : QRect();
        return visualRect(option->direction, rect, found);
    }
    const auto *group = qstyleoption_cast<const QStyleOptionGroupBox *>(option);
    if (group && part == SC_GroupBoxFrame && (!group->text.isEmpty() || group->subControls & SC_GroupBoxCheckBox)) {
        const QRect label = QProxyStyle::subControlRect(control, option, SC_GroupBoxLabel, widget);
        return rect.adjusted(0, std::max(label.height(), SkinIndicator) + 4, 0, 0);
    }
    return QProxyStyle::subControlRect(control, option, part, widget);
}

QRect SkinStyle::subElementRect(SubElement element, const QStyleOption *option, const QWidget *widget) const
{
    if (element == SE_LineEditContents) {
        const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
        return frame && frame->lineWidth > 0 ? option->rect.adjusted(SkinFieldRoom, 2, -SkinFieldRoom, -2)
                                             : option->rect;
    }
    return QProxyStyle::subElementRect(element, option, widget);
}

QSize SkinStyle::sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                                  const QWidget *widget) const
{
    const QSize field(contents.width() + 2 * SkinFieldRoom, std::max(SkinFieldHeight, contents.height() + 8));
    switch (type) {
    case CT_PushButton: {
        const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
        const int least = button && !button->text.isEmpty() ? LeastButtonWidth : SkinFieldHeight;
        return {std::max(least, contents.width() + 2 * ButtonRoom), field.height()};
    }
    case CT_ToolButton:
        if (const auto *button = qstyleoption_cast<const QStyleOptionToolButton *>(option))
            return ToolButtonSize(*button, contents, widget);
        return contents;
    case CT_LineEdit: {
        const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
        return frame && frame->lineWidth > 0 ? field : contents;
    }
    case CT_ComboBox:
    case CT_SpinBox:
        return field + QSize(SkinArrowWidth + 2, 0);
    case CT_CheckBox:
    case CT_RadioButton:
    case CT_HeaderSection:
        return QProxyStyle::sizeFromContents(type, option, contents, widget).expandedTo({0, SkinRowHeight});
    case CT_TabBarTab:
        return contents.expandedTo({0, SkinFieldHeight});
    case CT_ItemViewItem: {
        const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
        return qobject_cast<const QListView *>(widget) ? size.expandedTo({0, SkinRowHeight}) : size;
    }
    case CT_MenuItem: {
        const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
        if (!item)
            return contents;
        if (item->menuItemType == QStyleOptionMenuItem::Separator && item->text.isEmpty())
            return {SkinMenuSide, 9};
        const bool hasSide = item->maxIconWidth > 0 || item->menuHasCheckableItems;
        const int left = hasSide ? SkinMenuSide : 0;
        return {left + contents.width() + 4 * SkinMenuRoom, std::max(SkinRowHeight, contents.height() + 8)};
    }
    default:
        return QProxyStyle::sizeFromContents(type, option, contents, widget);
    }
}

int SkinStyle::pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const
{
    switch (metric) {
    case PM_DefaultFrameWidth:
        return qobject_cast<const QAbstractScrollArea *>(widget) ? SkinFieldRoom - 1 : 2;
    case PM_SpinBoxFrameWidth:
    case PM_ComboBoxFrameWidth:
        return 2;
    case PM_ButtonMargin:
        return 6;
    case PM_ButtonDefaultIndicator:
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
    case PM_TabBarTabOverlap:
    case PM_TabBarTabShiftVertical:
    case PM_TabBarTabShiftHorizontal:
    case PM_ScrollView_ScrollBarSpacing:
    case PM_MenuDesktopFrameWidth:
        return 0;
    case PM_MenuButtonIndicator:
        return 18;
    case PM_SplitterWidth:
    case PM_TabBarBaseOverlap:
        return 1;
    case PM_ScrollBarExtent:
        return SkinScrollExtent;
    case PM_ScrollBarSliderMin:
        return LeastThumb;
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return SkinIndicator;
    case PM_CheckBoxLabelSpacing:
    case PM_RadioButtonLabelSpacing:
        return 7;
    case PM_MenuPanelWidth:
        return SkinMenuEdge;
    case PM_MenuHMargin:
    case PM_MenuVMargin:
        return 0;
    case PM_HeaderMargin:
        return 5;
    case PM_TabBarTabHSpace:
        return 2 * ButtonRoom;
    case PM_TabBarTabVSpace:
        return 10;
    case PM_ToolTipLabelFrameWidth:
        return 4;
    case PM_ListViewIconSize:
        return widget && widget->inherits("QComboBoxListView") ? pixelMetric(PM_SmallIconSize, option, widget)
                                                               : QProxyStyle::pixelMetric(metric, option, widget);
    case PM_FocusFrameHMargin:
        return widget && widget->inherits("QComboBoxListView") ? 4 : QProxyStyle::pixelMetric(metric, option, widget);
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int SkinStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                         QStyleHintReturn *answer) const
{
    switch (hint) {
    case SH_ComboBox_Popup: // a list below the combo, as long as the combo allows
    case SH_Widget_Animation_Duration:
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_EtchDisabledText:
    case SH_DitherDisabledText:
        return 0;
    case SH_ComboBox_ListMouseTracking:
    case SH_ItemView_ShowDecorationSelected:
        return 1;
    case SH_ToolTipLabel_Opacity:
        return 255;
    case SH_Table_GridLineColor:
        return static_cast<int>(m_skin.Colour(SkinPart::GridLine));
    case SH_Menu_Mask:
    case SH_ToolTip_Mask: {
        const int radius = std::min(m_skin.cornerRadius, SkinMaskRadius);
        auto *mask = qstyleoption_cast<QStyleHintReturnMask *>(answer);
        if (!mask || !option || radius == 0)
            return 0;
        mask->region = RoundedRegion(option->rect, radius);
        return 1;
    }
    default:
        return QProxyStyle::styleHint(hint, option, widget, answer);
    }
}
