#include "toolkit/CxLabel.h"

#include <QPainter>
#include <QStyle>

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
