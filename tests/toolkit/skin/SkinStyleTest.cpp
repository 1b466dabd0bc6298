#include "toolkit/skin/SkinStyle.h"

#include "toolkit/skin/ProductSkins.h"

#include <QPainter>
#include <QSet>
#include <QStyleOption>

using namespace Qt::StringLiterals;

namespace {

QImage Painted(const SkinStyle &style, double scale, QStyle::PrimitiveElement element, QStyle::State state)
{
    QImage image(QSize(64, 40) * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(QColor::fromRgba(style.Current().Colour(SkinPart::Window)));
    QPainter painter(&image);
    QStyleOptionFrame option;
    option.rect = QRect(7, 5, 47, 27);
    option.state = QStyle::State_Enabled | state;
    option.lineWidth = 2;
    option.palette = SkinPalette(style.Current());
    style.drawPrimitive(element, &option, &painter, nullptr);
    return image;
}

} // namespace

TEST(SkinStyle, LinesAreWholePixelsAtEveryScale)
{
    for (Skin skin : ProductSkins()) {
        skin.cornerRadius = 0;
        skin.isGlossy = false;
        for (SkinFill &fill : skin.fills)
            fill.bottom = fill.top;
        const SkinStyle style(skin);
        for (const double scale : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0}) {
            for (const auto &[state, frame] :
                 {std::pair(QStyle::State_None, SkinPart::Frame), {QStyle::State_HasFocus, SkinPart::FocusRing}}) {
                const QImage image = Painted(style, scale, QStyle::PE_PanelLineEdit, state);
                QSet<QRgb> found;
                for (int pixel = 0; pixel < image.width() * image.height(); ++pixel)
                    found.insert(image.pixel(pixel % image.width(), pixel / image.width()));
                const QSet<QRgb> allowed{skin.Colour(SkinPart::Window), skin.Colour(SkinPart::Base),
                                         skin.Colour(frame)};
                EXPECT_EQ(found, allowed) << skin.name.toStdString() << " at " << scale;
            }
        }
    }
}

TEST(SkinStyle, APictureThatCannotBeReadLeavesTheDrawnOne)
{
    Skin plain = ProductSkins()[0];
    SkinStyle style(plain);
    const auto arrow = [&](const QByteArray &picture) {
        plain.pictures = {{u"branchClosed"_s, picture}};
        style.SetSkin(plain);
        return Painted(style, 1, QStyle::PE_IndicatorBranch, QStyle::State_Children);
    };
    const QImage drawn = Painted(style, 1, QStyle::PE_IndicatorBranch, QStyle::State_Children);
    arrow(R"(<svg xmlns="http://www.w3.org/2000/svg" width="1e9" height="1e9" viewBox="0 0 0 0"/>)");
    const QByteArray square =
        R"(<svg xmlns="http://www.w3.org/2000/svg"><path fill="#ff00ff" d="M0 0h99v99h-99z"/></svg>)";
    EXPECT_EQ(arrow(square).pixelColor(30, 18), QColor(255, 0, 255));
    for (const QByteArray &broken : {QByteArray("<svg"), QByteArray("\x89PNG"), QByteArray(1000, '\0')})
        EXPECT_EQ(arrow(broken), drawn); // nothing of the last skin is kept
}
