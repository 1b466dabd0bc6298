#include "toolkit/controls/CxLabel.h"

#include "toolkit/skin/SkinPainter.h"
#include "toolkit/skin/SkinStyle.h"

#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QStyle>

namespace {

constexpr double enoughContrast = 4.5;
constexpr double highContrast = 7;
constexpr int steps = 20; // from the colour to white or black

QColor ReadableOn(const QColor &ground, const QColor &text)
{
    const bool isGroundDark = Contrast(ground, Qt::white) > Contrast(ground, Qt::black);
    const double target = isGroundDark ? 1 : 0;
    const auto *style = qobject_cast<const SkinStyle *>(QApplication::style());
    const double enough = style && style->Current().isHighContrast ? highContrast : enoughContrast;
    QColor colour = text;
    for (int step = 1; step <= steps && Contrast(colour, ground) < enough; ++step) {
        const auto moved = [&](double part) { return float(part + (target - part) * step / steps); };
        colour = QColor::fromRgbF(moved(text.redF()), moved(text.greenF()), moved(text.blueF()));
    }
    return colour;
}

} // namespace

TcxLabel::TcxLabel(QWidget *parent) : QLabel(parent) {}

void TcxLabel::SetTextColor(const QColor &colour)
{
    m_textColor = colour;
    FollowGround();
}

void TcxLabel::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ParentChange ||
        event->type() == QEvent::StyleChange)
        FollowGround();
}

void TcxLabel::FollowGround()
{
    if (!m_textColor.isValid())
        return;
    QPalette changed = palette();
    const QColor wanted = ReadableOn(changed.color(QPalette::Active, QPalette::Window), m_textColor);
    // Setting the palette re-enters this function.
    if (changed.color(QPalette::Active, QPalette::WindowText) == wanted)
        return;
    changed = QPalette();
    changed.setColor(QPalette::WindowText, wanted);
    setPalette(changed);
}

void TcxLabel::SetShadow(int depth, const QColor &colour)
{
    m_depth = depth;
    m_shadow = colour;
    update();
}

void TcxLabel::paintEvent(QPaintEvent *event)
{
    if (m_depth > 0) {
        QPainter painter(this);
        QPalette shadow = palette();
        shadow.setColor(foregroundRole(), m_shadow);
        const int flags = QStyle::visualAlignment(layoutDirection(), alignment()) | (wordWrap() ? Qt::TextWordWrap : 0);
        style()->drawItemText(&painter, contentsRect().translated(m_depth, m_depth), flags, shadow, isEnabled(), text(),
                              foregroundRole());
    }
    QLabel::paintEvent(event);
}
