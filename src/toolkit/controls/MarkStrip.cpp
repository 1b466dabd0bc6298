#include "toolkit/controls/MarkStrip.h"

#include "toolkit/controls/StripLines.h"
#include "toolkit/program/Fonts.h"
#include "toolkit/program/Guard.h"
#include "toolkit/skin/SkinPainter.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int lineThickness = 3;
constexpr int edge = 1;

struct Colours
{
    QRgb onLight, onDark;
};
/// By kind.
constexpr std::array colours{Colours{0xffb3261e, 0xffff8a80}, Colours{0xffb8621b, 0xffffb74d},
                             Colours{0xff2c6fb3, 0xff82b1ff}, Colours{0xff6b7785, 0xffa9b4c0},
                             Colours{0xff00796b, 0xff4dd0c0}};

int Thickness()
{
    return GrownPixels(lineThickness);
}

} // namespace

QColor StripColour(StripKind kind, const QColor &ground)
{
    const Colours &own = colours[static_cast<size_t>(kind)];
    const QColor onLight(own.onLight), onDark(own.onDark);
    return Contrast(onLight, ground) > Contrast(onDark, ground) ? onLight : onDark;
}

TMarkStrip::TMarkStrip(QWidget *parent) : QWidget(parent)
{
    setMouseTracking(true);
}

void TMarkStrip::SetLines(const QList<Line> &lines)
{
    m_lines = lines;
    m_heights.clear();
    for (const Line &line : lines)
        m_heights.append(line.height);
    m_pressed = -1;
    unsetCursor();
    update();
}

QRect TMarkStrip::RectOf(qsizetype line) const
{
    // The hits have one side for themselves, so that neither hides the other.
    const int middle = width() / 2;
    const bool isHit = m_lines[line].kind == StripKind::Hit;
    const int left = isHit ? edge : middle;
    const int right = isHit ? middle - edge : width() - edge;
    return {left, StripRow(m_heights[line], height(), Thickness()), right - left, Thickness()};
}

void TMarkStrip::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QColor ground = palette().color(QPalette::Base);
    painter.fillRect(rect(), ground);
    for (qsizetype line = 0; line < m_lines.size(); ++line)
        painter.fillRect(RectOf(line), StripColour(m_lines[line].kind, ground));
}

qsizetype TMarkStrip::LineAt(const QPoint &point) const
{
    return rect().contains(point) ? StripLineAt(m_heights, height(), Thickness(), point.y()) : -1;
}

/// Of all lines that are as near, as they may cover each other.
QString TMarkStrip::HintAt(const QPoint &point) const
{
    const qsizetype nearest = LineAt(point);
    if (nearest < 0)
        return {};
    constexpr qsizetype mostHints = 5;
    QStringList hints;
    for (qsizetype line = m_lines.size() - 1; line >= 0 && hints.size() < mostHints; --line) {
        const QString &hint = m_lines[line].hint;
        if (RectOf(line).y() != RectOf(nearest).y() || hint.isEmpty())
            continue;
        const QString title = hint.section(u'\n', 0, 0).toHtmlEscaped();
        QString rest = hint.section(u'\n', 1).toHtmlEscaped();
        rest.replace(u'\n', u"<br>"_s);
        const QString text = u"<b>%1</b>"_s.arg(title) + (rest.isEmpty() ? QString() : u"<br>"_s + rest);
        if (!hints.contains(text))
            hints.append(text);
    }
    // As escaped HTML, so that long notes wrap.
    return hints.isEmpty() ? QString() : u"<qt>"_s + hints.join(u"<hr>"_s) + u"</qt>"_s;
}

bool TMarkStrip::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto &help = *static_cast<QHelpEvent *>(event);
    QToolTip::showText(help.globalPos(), HintAt(help.pos()), this);
    return true;
}

void TMarkStrip::mouseMoveEvent(QMouseEvent *event)
{
    if (LineAt(event->pos()) >= 0)
        setCursor(Qt::PointingHandCursor);
    else
        unsetCursor();
}

void TMarkStrip::mousePressEvent(QMouseEvent *event)
{
    m_pressed = event->button() == Qt::LeftButton ? LineAt(event->pos()) : -1;
}

void TMarkStrip::mouseReleaseEvent(QMouseEvent *event)
{
    const qsizetype line = LineAt(event->pos());
    if (event->button() == Qt::LeftButton && line >= 0 && line == std::exchange(m_pressed, -1) && OnClick)
        RunGuarded([&] { OnClick(line); });
}

void TMarkStrip::mouseDoubleClickEvent(QMouseEvent *event)
{
    const qsizetype line = LineAt(event->pos());
    m_pressed = -1; // its release is no further click
    if (event->button() == Qt::LeftButton && line >= 0 && OnDoubleClick)
        RunGuarded([&] { OnDoubleClick(line); });
}
