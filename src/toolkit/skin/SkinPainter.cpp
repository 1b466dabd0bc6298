#include "toolkit/skin/SkinPainter.h"

#include "base/Contrast.h"

#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace {

QBrush BrushOf(const SkinFill &fill, const QRectF &rect)
{
    if (fill.IsFlat())
        return QColor::fromRgba(fill.top);
    QLinearGradient blend(rect.topLeft(), rect.bottomLeft());
    blend.setColorAt(0, QColor::fromRgba(fill.top));
    blend.setColorAt(1, QColor::fromRgba(fill.bottom));
    return blend;
}

QPainterPath Rounded(const QRectF &rect, double radius, int round)
{
    QPainterPath path;
    const double most = std::min({radius, rect.width() / 2, rect.height() / 2});
    if (most <= 0 || round == 0) {
        path.addRect(rect);
        return path;
    }
    path.addRoundedRect(rect, most, most);
    if (round == SkinPainter::AllSides)
        return path;
    QRectF square = rect;
    if (round & SkinPainter::Top)
        square.setTop(rect.center().y());
    else
        square.setBottom(rect.center().y());
    path.setFillRule(Qt::WindingFill);
    path.addRect(square);
    return path;
}

} // namespace

double Contrast(const QColor &one, const QColor &other)
{
    return ContrastRatio(one.rgb(), other.rgb());
}

QColor Mixed(const QColor &one, const QColor &other, double share)
{
    const auto mix = [share](int first, int second) {
        return static_cast<int>(std::lround(first + (second - first) * share));
    };
    return {mix(one.red(), other.red()), mix(one.green(), other.green()), mix(one.blue(), other.blue()),
            mix(one.alpha(), other.alpha())};
}

SkinPainter::SkinPainter(QPainter *painter) : m_painter(painter)
{
    m_painter->save();
    const QTransform device = painter->deviceTransform();
    if (device.type() <= QTransform::TxScale && device.m11() > 0 && device.m22() > 0) {
        m_toPixels = device;
        m_scale = device.m11();
        painter->setWorldTransform(device.inverted() * painter->worldTransform());
    }
    painter->setRenderHint(QPainter::Antialiasing, false);
}

SkinPainter::~SkinPainter()
{
    m_painter->restore();
}

QRect SkinPainter::Pixels(const QRect &rect) const
{
    const QRectF exact = m_toPixels.mapRect(QRectF(rect));
    const QPoint from(qRound(exact.left()), qRound(exact.top()));
    return {from, QSize(qRound(exact.right()) - from.x(), qRound(exact.bottom()) - from.y())};
}

int SkinPainter::Pixels(double length) const
{
    return length <= 0 ? 0 : std::max(1, qRound(length * m_scale));
}

void SkinPainter::DrawPanel(const QRect &rect, const Panel &panel)
{
    const QRect outer = Pixels(rect);
    if (outer.isEmpty())
        return;
    const int width = panel.frame.isValid() ? Pixels(panel.width) : 0;
    const QRect inner = outer.adjusted(width, width, -width, -width);
    const double radius = panel.radius * m_scale;
    const bool isRound = panel.radius > 0 && panel.round != 0;
    m_painter->setRenderHint(QPainter::Antialiasing, isRound);
    m_painter->setPen(Qt::NoPen);
    const QPainterPath core = Rounded(inner, std::max(0.0, radius - width), panel.round);
    const bool isSolid = qAlpha(panel.fill.top) == 255 && qAlpha(panel.fill.bottom) == 255;
    if (width > 0) {
        QPainterPath ring = Rounded(outer, radius, panel.round);
        // A solid fill reaches under the frame, so that no seam shows between the two.
        if (!isSolid)
            ring = ring.subtracted(core);
        m_painter->fillPath(ring, panel.frame);
    }
    if (qAlpha(panel.fill.top) > 0 || qAlpha(panel.fill.bottom) > 0)
        m_painter->fillPath(core, BrushOf(panel.fill, inner));
    if (panel.shine > 0) {
        const QRect half(inner.topLeft(), QSize(inner.width(), inner.height() / 2));
        QLinearGradient light(half.topLeft(), half.bottomLeft());
        light.setColorAt(0, QColor(255, 255, 255, panel.shine));
        light.setColorAt(1, QColor(255, 255, 255, panel.shine / 3));
        QPainterPath upper;
        upper.addRect(half);
        m_painter->fillPath(core.intersected(upper), light);
    }
    m_painter->setRenderHint(QPainter::Antialiasing, false);
}

void SkinPainter::Fill(const QRect &rect, const SkinFill &fill)
{
    const QRect pixels = Pixels(rect);
    m_painter->fillRect(pixels, BrushOf(fill, pixels));
}

void SkinPainter::Ring(const QRect &rect, const QColor &ink, int width, int radius)
{
    DrawPanel(rect, {.fill = {}, .frame = ink, .width = width, .radius = radius});
}

void SkinPainter::EdgeLine(const QRect &rect, Qt::Edge edge, const QColor &ink)
{
    QRect line = Pixels(rect);
    const int width = Pixels(1.0);
    switch (edge) {
    case Qt::TopEdge:
        line.setHeight(width);
        break;
    case Qt::BottomEdge:
        line.setTop(line.bottom() + 1 - width);
        break;
    case Qt::LeftEdge:
        line.setWidth(width);
        break;
    case Qt::RightEdge:
        line.setLeft(line.right() + 1 - width);
        break;
    }
    m_painter->fillRect(line, ink);
}

void SkinPainter::DrawStrokes(const QPolygonF &points, const QColor &ink)
{
    m_painter->setRenderHint(QPainter::Antialiasing);
    m_painter->setBrush(Qt::NoBrush);
    m_painter->setPen(QPen(ink, 1.6 * m_scale, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    m_painter->drawPolyline(points);
    m_painter->setRenderHint(QPainter::Antialiasing, false);
}

void SkinPainter::Chevron(const QRect &rect, Qt::ArrowType direction, const QColor &ink)
{
    const QRectF pixels = Pixels(rect);
    const QPointF middle = pixels.center();
    const double wide = std::min(3.5 * m_scale, std::min(pixels.width(), pixels.height()) / 2.5);
    const double deep = wide / 2;
    QPolygonF points;
    switch (direction) {
    case Qt::UpArrow:
        points << QPointF(-wide, deep) << QPointF(0, -deep) << QPointF(wide, deep);
        break;
    case Qt::LeftArrow:
        points << QPointF(deep, -wide) << QPointF(-deep, 0) << QPointF(deep, wide);
        break;
    case Qt::RightArrow:
        points << QPointF(-deep, -wide) << QPointF(deep, 0) << QPointF(-deep, wide);
        break;
    default:
        points << QPointF(-wide, -deep) << QPointF(0, deep) << QPointF(wide, -deep);
        break;
    }
    DrawStrokes(points.translated(middle), ink);
}

void SkinPainter::CheckMark(const QRect &rect, const QColor &ink)
{
    const QRectF pixels = Pixels(rect);
    const double unit = std::min(pixels.width(), pixels.height()) / 16;
    QPolygonF points;
    points << QPointF(-4 * unit, 0) << QPointF(-1.2 * unit, 2.9 * unit) << QPointF(4 * unit, -2.9 * unit);
    DrawStrokes(points.translated(pixels.center()), ink);
}

void SkinPainter::Dot(const QRect &rect, const QColor &ink, double diameter)
{
    const double radius = diameter * m_scale / 2;
    m_painter->setRenderHint(QPainter::Antialiasing);
    m_painter->setPen(Qt::NoPen);
    m_painter->setBrush(ink);
    m_painter->drawEllipse(QRectF(Pixels(rect)).center(), radius, radius);
    m_painter->setRenderHint(QPainter::Antialiasing, false);
}
