#include "toolkit/skin/SkinStyle.h"

#include "toolkit/skin/SkinPainter.h"

#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QMenu>
#include <QPlainTextEdit>
#include <QStyleFactory>
#include <QStyleOption>
#include <QStyledItemDelegate>
#include <QSvgRenderer>
#include <QTabBar>
#include <QTableView>
#include <QTextEdit>
#include <QtPlugin>

#include <algorithm>
#include <utility>

// A static plug-in, because QIcon finds engines only as plug-ins. Imported here because every window uses the style.
Q_IMPORT_PLUGIN(PictureEnginePlugin)

using namespace Qt::StringLiterals;

namespace {

constexpr int MostPicturePixels = 256;

bool IsDropDown(const QWidget *widget)
{
    return widget && (widget->inherits("QComboBoxListView") || widget->inherits("QComboBoxPrivateContainer"));
}

} // namespace

QPalette SkinPalette(const Skin &skin)
{
    const auto colour = [&skin](SkinPart part) { return QColor::fromRgba(skin.Colour(part)); };
    const QColor button = colour(SkinPart::Button);
    const QColor disabled = colour(SkinPart::DisabledText);
    const QColor dark = Mixed(button, Qt::black, 0.45);
    const bool isWhiteBright = Contrast(Qt::white, dark) > Contrast(Qt::black, dark);
    const std::pair<QPalette::ColorRole, QColor> roles[] = {
        {QPalette::Window, colour(SkinPart::Window)},
        {QPalette::WindowText, colour(SkinPart::WindowText)},
        {QPalette::Base, colour(SkinPart::Base)},
        {QPalette::AlternateBase, colour(SkinPart::AlternateBase)},
        {QPalette::Text, colour(SkinPart::Text)},
        {QPalette::PlaceholderText, colour(SkinPart::PlaceholderText)},
        {QPalette::Button, button},
        {QPalette::ButtonText, colour(SkinPart::ButtonText)},
        {QPalette::BrightText, isWhiteBright ? Qt::white : Qt::black},
        {QPalette::Highlight, colour(SkinPart::Selection)},
        {QPalette::HighlightedText, colour(SkinPart::SelectionText)},
        {QPalette::Link, colour(SkinPart::Link)},
        {QPalette::LinkVisited, colour(SkinPart::Link)},
        {QPalette::ToolTipBase, colour(SkinPart::ToolTip)},
        {QPalette::ToolTipText, colour(SkinPart::ToolTipText)},
        {QPalette::Light, Mixed(button, Qt::white, 0.6)},
        {QPalette::Midlight, Mixed(button, Qt::white, 0.3)},
        {QPalette::Mid, Mixed(button, Qt::black, 0.25)},
        {QPalette::Dark, dark},
        {QPalette::Shadow, Mixed(button, Qt::black, 0.7)},
    };
    QPalette palette;
    for (const auto &[role, value] : roles)
        palette.setColor(QPalette::All, role, value);
    palette.setColor(QPalette::Inactive, QPalette::Highlight, colour(SkinPart::InactiveSelection));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, colour(SkinPart::InactiveSelection));
    palette.setColor(QPalette::Disabled, QPalette::Base, colour(SkinPart::Window));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::PlaceholderText,
                            QPalette::Link, QPalette::LinkVisited})
        palette.setColor(QPalette::Disabled, role, disabled);
    constexpr double leastContrast = 3;
    if (Contrast(disabled, colour(SkinPart::InactiveSelection)) >= leastContrast)
        palette.setColor(QPalette::Disabled, QPalette::HighlightedText, disabled);
    return palette;
}

SkinStyle::SkinStyle(Skin skin) : QProxyStyle(QStyleFactory::create(u"Fusion"_s)), m_skin(std::move(skin)) {}

void SkinStyle::SetSkin(Skin skin)
{
    m_skin = std::move(skin);
    m_pictures.clear();
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget *widget : widgets) {
        Dress(widget);
        widget->update(); // an unchanged palette would repaint nothing
    }
}

/// Qt treats drop-down lists as lists; here they look like menus.
void SkinStyle::Dress(QWidget *widget) const
{
    if (!IsDropDown(widget))
        return;
    QPalette palette = widget->palette();
    palette.setColor(QPalette::All, QPalette::Window, Ink(SkinPart::Menu));
    palette.setColor(QPalette::All, QPalette::Base, Ink(SkinPart::Menu));
    palette.setColor(QPalette::All, QPalette::Text, Ink(SkinPart::MenuText));
    palette.setColor(QPalette::Disabled, QPalette::Text, Ink(SkinPart::DisabledText));
    palette.setColor(QPalette::All, QPalette::Highlight, Ink(SkinPart::MenuSelection));
    palette.setColor(QPalette::All, QPalette::HighlightedText, Ink(SkinPart::MenuSelectionText));
    widget->setPalette(palette);
}

void SkinStyle::polish(QWidget *widget)
{
    QProxyStyle::polish(widget);
    Dress(widget);
    if (auto *view = qobject_cast<QAbstractItemView *>(widget)) {
        view->viewport()->setAttribute(Qt::WA_Hover);
        // Qt's own delegate of drop-down lists has no padding and does not ask the style.
        if (view->inherits("QComboBoxListView") && view->itemDelegate()->inherits("QComboBoxDelegate"))
            view->setItemDelegate(new QStyledItemDelegate(view));
    } else if (qobject_cast<QTabBar *>(widget)) {
        widget->setAttribute(Qt::WA_Hover);
    }
}

void SkinStyle::unpolish(QWidget *widget)
{
    if (IsDropDown(widget))
        widget->setPalette({});
    QProxyStyle::unpolish(widget);
}

QPixmap SkinStyle::generatedIconPixmap(QIcon::Mode mode, const QPixmap &pixmap, const QStyleOption *option) const
{
    // A picture on a selected row keeps its colours.
    return mode == QIcon::Selected ? pixmap : QProxyStyle::generatedIconPixmap(mode, pixmap, option);
}

SkinFill SkinStyle::Ground(SkinPart part, const QStyleOption *option, QPalette::ColorRole role) const
{
    const QPalette::ColorGroup group = option->state & State_Enabled ? QPalette::Active : QPalette::Disabled;
    const QRgb colour = option->palette.color(group, role).rgba();
    return colour == m_skin.Colour(part) ? m_skin.Fill(part) : SkinFill{colour, colour};
}

bool SkinStyle::DrawPicture(QPainter *painter, const QRect &rect, const QString &name) const
{
    const auto found = m_skin.pictures.constFind(name);
    const int side = std::min(rect.width(), rect.height());
    if (found == m_skin.pictures.constEnd() || side <= 0)
        return false;
    const double scale = painter->device()->devicePixelRatioF();
    const int pixels = std::min(qRound(side * scale), MostPicturePixels);
    const QString key = name + u'/' + QString::number(pixels);
    auto cached = m_pictures.constFind(key);
    if (cached == m_pictures.constEnd()) {
        QPixmap picture;
        QSvgRenderer renderer(*found);
        if (renderer.isValid()) {
            picture = QPixmap(pixels, pixels);
            picture.fill(Qt::transparent);
            renderer.setAspectRatioMode(Qt::KeepAspectRatio);
            QPainter drawing(&picture);
            renderer.render(&drawing);
        }
        cached = m_pictures.insert(key, picture);
    }
    if (cached->isNull())
        return false;
    QRect square(0, 0, side, side);
    square.moveCenter(rect.center());
    painter->drawPixmap(square, *cached);
    return true;
}

void SkinStyle::DrawArrow(QPainter *painter, const QRect &rect, Qt::ArrowType direction, const QColor &ink) const
{
    const bool isUp = direction == Qt::UpArrow;
    QRect square(0, 0, 16, 16);
    square.moveCenter(rect.center());
    if ((isUp || direction == Qt::DownArrow) &&
        DrawPicture(painter, square & rect, isUp ? u"arrowUp"_s : u"arrowDown"_s))
        return;
    SkinPainter(painter).Chevron(rect, direction, ink);
}

void SkinStyle::DrawFocus(SkinPainter &pixels, const QRect &rect, const QColor &ink) const
{
    pixels.Ring(rect, ink, m_skin.focusWidth, m_skin.cornerRadius);
}

void SkinStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                              const QWidget *widget) const
{
    if (!DrawControlPrimitive(element, option, painter, widget) &&
        !DrawViewPrimitive(element, option, painter, widget) && !DrawMenuPrimitive(element, option, painter, widget))
        QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void SkinStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                            const QWidget *widget) const
{
    if (!DrawButtonControl(element, option, painter, widget) && !DrawViewControl(element, option, painter, widget) &&
        !DrawMenuControl(element, option, painter, widget))
        QProxyStyle::drawControl(element, option, painter, widget);
}

void SkinStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                                   const QWidget *widget) const
{
    if (const auto *tool = qstyleoption_cast<const QStyleOptionToolButton *>(option); tool && control == CC_ToolButton)
        DrawToolButton(*tool, painter, widget);
    else if (const auto *combo = qstyleoption_cast<const QStyleOptionComboBox *>(option);
             combo && control == CC_ComboBox)
        DrawCombo(*combo, painter, widget);
    else if (const auto *spin = qstyleoption_cast<const QStyleOptionSpinBox *>(option); spin && control == CC_SpinBox)
        DrawSpin(*spin, painter, widget);
    else if (const auto *bar = qstyleoption_cast<const QStyleOptionSlider *>(option); bar && control == CC_ScrollBar)
        DrawScrollBar(*bar, painter, widget);
    else
        QProxyStyle::drawComplexControl(control, option, painter, widget);
}
