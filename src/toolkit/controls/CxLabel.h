#pragma once

#include <QColor>
#include <QLabel>

/// A label whose text colour stays readable: if its contrast with the window's background is too low, the colour is
/// moved towards white or black until it is enough; another look restores it. The text may have a shadow.
class TcxLabel : public QLabel
{
    Q_OBJECT
    Q_PROPERTY(QColor TextColor READ TextColor WRITE SetTextColor)
public:
    explicit TcxLabel(QWidget *parent = nullptr);

    /// The colour that was asked for; invalid for the window's own.
    QColor TextColor() const { return m_textColor; }
    void SetTextColor(const QColor &colour);
    /// Draws the text first in `colour`, `depth` pixels to the right and below; 0 for no shadow.
    void SetShadow(int depth, const QColor &colour);

protected:
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void FollowGround();

    QColor m_textColor;
    int m_depth = 0;
    QColor m_shadow;
};
