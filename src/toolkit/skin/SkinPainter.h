#pragma once

#include "presentation/looks/Skin.h"

#include <QColor>
#include <QPainter>
#include <QRect>

/// Draws in whole device pixels, so that lines are sharp at every scale; the destructor restores the painter.
/// Rectangles and lengths are in the painter's units; their edges are rounded.
class SkinPainter
{
public:
    enum Side { Top = 1, Bottom = 2, AllSides = 3 };

    /// A fill with a frame inside its edge. Width and radius are in units at 96 dpi.
    struct Panel
    {
        SkinFill fill;
        QColor frame; ///< invalid for none
        int width = 1;
        int radius = 0;
        int round = AllSides; ///< sides whose corners are round
        int shine = 0;        ///< strength of the highlight in the upper half, 0 to 255
    };

    explicit SkinPainter(QPainter *painter);
    ~SkinPainter();
    SkinPainter(const SkinPainter &) = delete;
    SkinPainter &operator=(const SkinPainter &) = delete;

    QRect Pixels(const QRect &rect) const;
    int Pixels(double length) const;

    void DrawPanel(const QRect &rect, const Panel &panel);
    /// Fills without round corners.
    void Fill(const QRect &rect, const SkinFill &fill);
    /// Draws a frame only.
    void Ring(const QRect &rect, const QColor &ink, int width, int radius);
    /// Draws a line of one unit along the rectangle's edge.
    void EdgeLine(const QRect &rect, Qt::Edge edge, const QColor &ink);
    void Chevron(const QRect &rect, Qt::ArrowType direction, const QColor &ink);
    void CheckMark(const QRect &rect, const QColor &ink);
    void Dot(const QRect &rect, const QColor &ink, double diameter);

private:
    void DrawStrokes(const QPolygonF &points, const QColor &ink);

    QPainter *m_painter;
    QTransform m_toPixels;
    double m_scale = 1;
};

/// Contrast of two opaque colours, 1 to 21.
double Contrast(const QColor &one, const QColor &other);
QColor Mixed(const QColor &one, const QColor &other, double share);
