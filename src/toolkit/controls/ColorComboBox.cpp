#include "toolkit/controls/ColorComboBox.h"

#include "toolkit/program/Doors.h"
#include "toolkit/program/Guard.h"

#include <QHelpEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <QStyledItemDelegate>
#include <QToolTip>
#include <QWheelEvent>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr int ShownRows = 14;
constexpr int RowHeight = 24; // pixels

/// Each colour once: "Cyan" and "Magenta" are other names of two of them.
constexpr char16_t colourNames[] =
    u"Pink LightPink HotPink DeepPink PaleVioletRed MediumVioletRed "
    u"LightSalmon Salmon DarkSalmon LightCoral IndianRed Crimson Red FireBrick DarkRed "
    u"Coral Tomato OrangeRed DarkOrange Orange "
    u"LightYellow LemonChiffon LightGoldenrodYellow PapayaWhip Moccasin PeachPuff PaleGoldenrod Khaki Yellow Gold "
    u"DarkKhaki "
    u"Cornsilk BlanchedAlmond Bisque NavajoWhite Wheat BurlyWood Tan RosyBrown SandyBrown Goldenrod DarkGoldenrod Peru "
    u"Chocolate SaddleBrown Sienna Brown Maroon "
    u"DarkOliveGreen Olive OliveDrab YellowGreen LimeGreen Lime LawnGreen Chartreuse GreenYellow SpringGreen "
    u"MediumSpringGreen LightGreen PaleGreen DarkSeaGreen MediumSeaGreen SeaGreen ForestGreen Green DarkGreen "
    u"LightCyan Aqua PaleTurquoise Aquamarine Turquoise MediumTurquoise DarkTurquoise MediumAquamarine LightSeaGreen "
    u"CadetBlue DarkCyan Teal "
    u"LightSteelBlue PowderBlue LightBlue SkyBlue LightSkyBlue DeepSkyBlue DodgerBlue CornflowerBlue SteelBlue "
    u"RoyalBlue Blue MediumBlue DarkBlue Navy MidnightBlue "
    u"Lavender Thistle Plum Violet Orchid Fuchsia MediumOrchid MediumPurple BlueViolet DarkViolet DarkOrchid "
    u"DarkMagenta Purple Indigo DarkSlateBlue SlateBlue MediumSlateBlue "
    u"White Snow Honeydew MintCream Azure AliceBlue GhostWhite WhiteSmoke Seashell Beige OldLace FloralWhite Ivory "
    u"AntiqueWhite Linen LavenderBlush MistyRose "
    u"Gainsboro LightGray Silver DarkGray Gray DimGray LightSlateGray SlateGray DarkSlateGray Black";

Colour ColourOf(const QColor &colour)
{
    return Colour(colour.red()) | Colour(colour.green()) << 8 | Colour(colour.blue()) << 16;
}

std::optional<Colour> ColourAt(const QModelIndex &index)
{
    const QVariant colour = index.data(Qt::UserRole);
    return colour.isValid() ? std::optional<Colour>(colour.toUInt()) : std::nullopt;
}

void PaintSwatch(QPainter &painter, const QRect &place, Colour colour, const QPalette &palette)
{
    painter.save();
    painter.setPen(palette.color(QPalette::Mid));
    painter.setBrush(QColor(ColorToHtml(colour)));
    painter.drawRect(place.adjusted(0, 0, -1, -1));
    painter.restore();
}

/// Paints an item as a swatch, with a margin that shows the selected row's background.
class SwatchDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::paint(painter, option, index);
        if (const auto colour = ColourAt(index))
            PaintSwatch(*painter, option.rect.adjusted(4, 4, -4, -4), *colour, option.palette);
    }
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        return QStyledItemDelegate::sizeHint(option, index).expandedTo({0, RowHeight});
    }

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        if (ColourAt(index))
            option->text.clear();
    }
};

} // namespace

TcxColorComboBox::TcxColorComboBox(QWidget *parent) : QComboBox(parent)
{
    setItemDelegate(new SwatchDelegate(this));
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    setMaxVisibleItems(ShownRows);
    setFocusPolicy(Qt::StrongFocus);
    for (const QString &name : QString::fromUtf16(colourNames).split(u' '))
        AddColour(count(), name, ColourOf(QColor(name)));
    addItem(QString());
    setCurrentIndex(-1);
    ConnectGuarded(this, &QComboBox::activated, this, [this](int index) { TakeChoice(index); });
}

void TcxColorComboBox::AddColour(int row, const QString &name, Colour colour)
{
    insertItem(row, name, colour);
    setItemData(row, name, Qt::ToolTipRole);
}

Colour TcxColorComboBox::ColorValue() const
{
    const QVariant colour = currentData();
    return colour.isValid() ? colour.toUInt() : m_defaultColor;
}

void TcxColorComboBox::SetColorValue(Colour colour)
{
    const QSignalBlocker quiet(this);
    int row = findData(colour);
    if (row < 0) {
        static const int named = int(QStringView(colourNames).count(u' ')) + 1;
        if (count() > named + 1)
            removeItem(named);
        AddColour(named, ColorToHtml(colour), colour);
        row = named;
    }
    setCurrentIndex(row);
    m_chosen = row;
}

QString TcxColorComboBox::OtherColorCaption() const
{
    return itemText(count() - 1);
}

void TcxColorComboBox::SetOtherColorCaption(const QString &caption)
{
    setItemText(count() - 1, caption);
}

void TcxColorComboBox::TakeChoice(int index)
{
    if (itemData(index).isValid()) {
        m_chosen = index;
        return;
    }
    setCurrentIndex(m_chosen);
    if (m_isStepping)
        return;
    if (const auto chosen = Doors().chooseColour(this, ColorValue()))
        SetColorValue(*chosen);
}

bool TcxColorComboBox::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        if (currentIndex() >= 0)
            QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), currentText(), this);
        return true;
    }
    return QComboBox::event(event);
}

void TcxColorComboBox::paintEvent(QPaintEvent *)
{
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    option.currentText.clear();
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    const QRect field = style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    if (currentData().isValid())
        PaintSwatch(painter, field.adjusted(2, 2, -2, -2), ColorValue(), palette());
}

void TcxColorComboBox::keyPressEvent(QKeyEvent *event)
{
    // Stepping through the closed list ends at the last colour; only the open list offers any other one.
    const QScopedValueRollback stepping(m_isStepping, true);
    QComboBox::keyPressEvent(event);
}

void TcxColorComboBox::wheelEvent(QWheelEvent *event)
{
    // The wheel scrolls past the combo and must not change its colour.
    event->ignore();
}
