#pragma once

#include <QByteArray>
#include <QColor>
#include <QIconEngine>
#include <QList>
#include <QSize>

/// The three colours of a picture.
struct PictureColours
{
    QRgb ink = 0;    ///< lines
    QRgb accent = 0; ///< the picture's main element
    QRgb fill = 0;   ///< light parts

    bool operator==(const PictureColours &) const = default;
};

/// The current colours of pictures: those of the current skin, else from the application's palette.
PictureColours ColoursOfPictures(QIcon::Mode mode);

/// Draws a command's picture in the colours of the current look, in device pixels. QIcon selects it by the suffix
/// "picture": such a file is an SVG drawn in the three colours #3f4f63 (ink), #b8621b (accent) and #fbf3e4 (fill). A
/// file that is missing or not an SVG gives a null pixmap. Main thread only.
class PictureEngine : public QIconEngine
{
public:
    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    /// QIcon gives `size` in device pixels up to Qt 6.7, and without `scale` from 6.8 on. The pixmap's own ratio stays
    /// 1, QIcon sets it.
    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state, qreal scale) override;
    void addFile(const QString &fileName, const QSize &size, QIcon::Mode mode, QIcon::State state) override;
    bool isNull() override;
    QString key() const override;
    QIconEngine *clone() const override;

private:
    struct Drawn
    {
        QSize size;
        PictureColours colours;
        QPixmap pixmap;
    };

    /// `size` is in device pixels.
    QPixmap Picture(const QSize &size, QIcon::Mode mode);

    QByteArray m_svg;
    QList<Drawn> m_drawn; // the newest last
};
