// QIcon looks for icon engines among plug-ins; this one is static.
#define QT_STATICPLUGIN

#include "toolkit/skin/PictureEngine.h"

#include "toolkit/skin/SkinStyle.h"

#include <QApplication>
#include <QFile>
#include <QIconEnginePlugin>
#include <QLibraryInfo>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>
#include <QVersionNumber>

#include <algorithm>

namespace {

/// Normal, disabled and selected, at the sizes of a button and of a menu.
constexpr qsizetype KeptPixmaps = 6;

QRgb Mix(const QColor &from, const QColor &to, qreal share)
{
    const auto channel = [share](int a, int b) { return qRound(a + (b - a) * share); };
    return qRgb(channel(from.red(), to.red()), channel(from.green(), to.green()), channel(from.blue(), to.blue()));
}

/// A picture in one colour; its light parts are `ground` with a tint of it.
PictureColours OneColour(const QColor &colour, const QColor &ground)
{
    constexpr qreal trace = 0.14;
    return {colour.rgb(), colour.rgb(), Mix(ground, colour, trace)};
}

PictureColours SkinColours(const Skin &skin, QIcon::Mode mode)
{
    const auto colour = [&skin](SkinPart part) { return QColor(skin.Colour(part)); };
    switch (mode) {
    case QIcon::Disabled:
        return OneColour(colour(SkinPart::DisabledText), colour(SkinPart::Window));
    case QIcon::Selected:
        return OneColour(colour(SkinPart::MenuSelectionText), colour(SkinPart::MenuSelection));
    default:
        return {colour(SkinPart::IconInk).rgb(), colour(SkinPart::IconAccent).rgb(), colour(SkinPart::IconFill).rgb()};
    }
}

PictureColours PaletteColours(const QPalette &palette, QIcon::Mode mode)
{
    constexpr qreal tint = 0.12;
    const QColor ground = palette.color(QPalette::Button);
    switch (mode) {
    case QIcon::Disabled:
        return OneColour(palette.color(QPalette::Disabled, QPalette::ButtonText), ground);
    case QIcon::Selected:
        return OneColour(palette.color(QPalette::HighlightedText), palette.color(QPalette::Highlight));
    default:
        // Lines are thicker than letters, so a little lighter.
        return {Mix(palette.color(QPalette::ButtonText), ground, tint), palette.color(QPalette::Link).rgb(),
                Mix(palette.color(QPalette::Base), palette.color(QPalette::Link), tint)};
    }
}

QByteArray Hex(QRgb colour)
{
    return QColor(colour).name().toLatin1();
}

} // namespace

PictureColours ColoursOfPictures(QIcon::Mode mode)
{
    const auto *style = qobject_cast<const SkinStyle *>(QApplication::style());
    return style ? SkinColours(style->Current(), mode) : PaletteColours(QApplication::palette(), mode);
}

void PictureEngine::addFile(const QString &fileName, const QSize &, QIcon::Mode, QIcon::State)
{
    QFile file(fileName);
    m_svg = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    // In two steps, because a colour of the skin may equal one of the file.
    m_svg.replace("#3f4f63", "{ink}").replace("#b8621b", "{accent}").replace("#fbf3e4", "{fill}");
    m_drawn.clear();
}

QPixmap PictureEngine::Picture(const QSize &size, QIcon::Mode mode)
{
    if (isNull() || size.isEmpty())
        return {};
    const PictureColours colours = ColoursOfPictures(mode);
    const auto drawn = std::find_if(m_drawn.cbegin(), m_drawn.cend(), [&](const Drawn &candidate) {
        return candidate.size == size && candidate.colours == colours;
    });
    if (drawn != m_drawn.cend())
        return drawn->pixmap;

    QByteArray svg = m_svg;
    svg.replace("{ink}", Hex(colours.ink))
        .replace("{accent}", Hex(colours.accent))
        .replace("{fill}", Hex(colours.fill));
    QSvgRenderer renderer(svg);
    QPixmap pixmap;
    if (renderer.isValid()) {
        renderer.setAspectRatioMode(Qt::KeepAspectRatio);
        pixmap = QPixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        renderer.render(&painter, QRectF(QPointF(), size));
    }
    if (m_drawn.size() == KeptPixmaps)
        m_drawn.removeFirst();
    m_drawn.append({size, colours, pixmap});
    return pixmap;
}

QPixmap PictureEngine::scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State, qreal scale)
{
    static const bool isGivenInDevicePixels = QLibraryInfo::version() < QVersionNumber(6, 8);
    return Picture(isGivenInDevicePixels ? size : (QSizeF(size) * scale).toSize(), mode);
}

QPixmap PictureEngine::pixmap(const QSize &size, QIcon::Mode mode, QIcon::State)
{
    return Picture(size, mode);
}

void PictureEngine::paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State)
{
    const qreal ratio = painter->device()->devicePixelRatio();
    const QPixmap drawn = Picture((QSizeF(rect.size()) * ratio).toSize(), mode);
    if (!drawn.isNull())
        painter->drawPixmap(rect, drawn);
}

bool PictureEngine::isNull()
{
    return m_svg.isEmpty();
}

QString PictureEngine::key() const
{
    return QStringLiteral("picture");
}

QIconEngine *PictureEngine::clone() const
{
    return new PictureEngine(*this);
}

/// Registers the engine with QIcon.
class PictureEnginePlugin : public QIconEnginePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QIconEngineFactoryInterface_iid FILE "PictureEngine.json")
public:
    QIconEngine *create(const QString &fileName) override
    {
        auto *engine = new PictureEngine;
        engine->addFile(fileName, {}, QIcon::Normal, QIcon::Off);
        return engine;
    }
};

#include "PictureEngine.moc"
