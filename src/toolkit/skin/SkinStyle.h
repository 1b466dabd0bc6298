#pragma once

#include "presentation/looks/Skin.h"

#include <QHash>
#include <QPalette>
#include <QPixmap>
#include <QProxyStyle>

class QStyleOptionButton;
class QStyleOptionComboBox;
class QStyleOptionHeader;
class QStyleOptionMenuItem;
class QStyleOptionProgressBar;
class QStyleOptionSlider;
class QStyleOptionSpinBox;
class QStyleOptionTab;
class QStyleOptionToolButton;
class QStyleOptionViewItem;
class SkinPainter;

/// The palette of a skin, for pictures and for controls that the style does not paint.
QPalette SkinPalette(const Skin &skin);

/// Paints every control of the program with a skin's fills and lines. It sets no fonts. To change the skin keep the
/// style object, set the skin, then the application's palette. Sizes are the same in every skin, so a change moves
/// nothing and costs one repaint. A QFrame of class TdxBar or named bmMainBar1 is painted as a bar.
class SkinStyle : public QProxyStyle
{
    Q_OBJECT
public:
    explicit SkinStyle(Skin skin);

    const Skin &Current() const { return m_skin; }
    void SetSkin(Skin skin);

    using QProxyStyle::polish;
    using QProxyStyle::unpolish;
    void polish(QWidget *widget) override;
    void unpolish(QWidget *widget) override;
    QPalette standardPalette() const override { return SkinPalette(m_skin); }
    QPixmap generatedIconPixmap(QIcon::Mode mode, const QPixmap &pixmap, const QStyleOption *option) const override;

    /// The pictures of message boxes in the skin's colours.
    QIcon standardIcon(StandardPixmap picture, const QStyleOption *option, const QWidget *widget) const override;

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                         const QWidget *widget) const override;
    QRect subElementRect(SubElement element, const QStyleOption *option, const QWidget *widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                           const QWidget *widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override;
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *answer) const override;

private:
    QColor Ink(SkinPart part) const { return QColor::fromRgba(m_skin.Colour(part)); }
    /// The skin's fill, unless the control's own palette replaces that colour.
    SkinFill Ground(SkinPart part, const QStyleOption *option, QPalette::ColorRole role) const;
    /// Draws a picture of the skin in the middle of the rectangle. False if the skin has none of that name.
    bool DrawPicture(QPainter *painter, const QRect &rect, const QString &name) const;
    void DrawArrow(QPainter *painter, const QRect &rect, Qt::ArrowType direction, const QColor &ink) const;
    void DrawFocus(SkinPainter &pixels, const QRect &rect, const QColor &ink) const;

    // Each draws the elements of its source file and returns false for any other.
    bool DrawControlPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                              const QWidget *widget) const;
    bool DrawViewPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                           const QWidget *widget) const;
    bool DrawMenuPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                           const QWidget *widget) const;
    bool DrawButtonControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                           const QWidget *widget) const;
    bool DrawViewControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                         const QWidget *widget) const;
    bool DrawMenuControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                         const QWidget *widget) const;

    /// Draws a button's fill, frame and focus ring for its state. False if it has no fill, or is disabled.
    bool DrawButtonPanel(QPainter *painter, const QStyleOption *option, bool isFlat, bool isDefault) const;
    void DrawFieldPanel(QPainter *painter, const QStyleOption *option) const;
    void DrawCheck(QPainter *painter, const QStyleOption *option, bool isRadio) const;
    void DrawToolButton(const QStyleOptionToolButton &option, QPainter *painter, const QWidget *widget) const;
    void DrawCombo(const QStyleOptionComboBox &option, QPainter *painter, const QWidget *widget) const;
    void DrawSpin(const QStyleOptionSpinBox &option, QPainter *painter, const QWidget *widget) const;
    void DrawScrollBar(const QStyleOptionSlider &option, QPainter *painter, const QWidget *widget) const;
    void DrawMenuItem(const QStyleOptionMenuItem &option, QPainter *painter, const QWidget *widget) const;
    void DrawTab(const QStyleOptionTab &option, QPainter *painter) const;
    void DrawProgress(const QStyleOptionProgressBar &option, QPainter *painter, const QWidget *widget) const;
    void DrawRow(const QStyleOptionViewItem &option, QPainter *painter, const QWidget *widget) const;
    void DrawBranch(const QStyleOption &option, QPainter *painter) const;
    void Dress(QWidget *widget) const;

    Skin m_skin;
    mutable QHash<QString, QPixmap> m_pictures; ///< by name and size in device pixels; null where it can't be read
};
