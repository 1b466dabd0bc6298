#pragma once

#include <QLabel>

/// A label whose text may throw a shadow.
class TcxLabel : public QLabel
{
    Q_OBJECT
public:
    using QLabel::QLabel;

    /// Draws the text in that colour first, so many pixels to the right and below; 0 for no shadow.
    void SetShadow(int depth, const QColor &colour);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int m_depth = 0;
    QColor m_shadow;
};
