#pragma once

#include <QColor>
#include <QLabel>

/// A label with a colour of its own that stays readable: where the window's ground leaves too little contrast, the
/// colour is moved towards white or black until it has enough, and comes back with another look. Its text may throw a
/// shadow.
class TcxLabel : public QLabel
{
    Q_OBJECT
    Q_PROPERTY(QColor TextColor READ TextColor WRITE SetTextColor)
public:
    explicit TcxLabel(QWidget *parent = nullptr);

    /// The colour as it was asked for; invalid for the window's own.
    QColor TextColor() const { return m_textColor; }
    void SetTextColor(const QColor &colour);
    /// Draws the text in that colour first, so many pixels to the right and below; 0 for no shadow.
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
