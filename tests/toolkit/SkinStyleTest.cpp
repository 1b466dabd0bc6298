#include "toolkit/SkinStyle.h"

#include "toolkit/SkinSamples.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QSet>
#include <QSpinBox>
#include <QStyleOption>
#include <QTabBar>
#include <QToolButton>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace {

/// The sizes of one of each control that a finger or a shaking hand must hit, in a style that knew no other skin
/// before.
QList<QSize> TargetSizes(const Skin &skin)
{
    SkinStyle style(skin);
    QPushButton push(u"OK"_s);
    QToolButton tool;
    tool.setIconSize({14, 14});
    tool.setIcon(QPixmap(14, 14));
    QLineEdit edit;
    QComboBox combo;
    combo.addItem(u"Việt"_s);
    QSpinBox spin;
    QCheckBox check(u"Việt"_s);
    QRadioButton radio(u"Việt"_s);
    QTabBar tabs;
    tabs.addTab(u"Việt"_s);
    QMenu menu;
    menu.addSeparator();
    QAction *item = menu.addAction(u"Pāli"_s);
    QList<QSize> sizes;
    for (QWidget *widget : QWidgetList{&push, &tool, &edit, &combo, &spin, &check, &radio, &tabs, &menu}) {
        widget->setStyle(&style);
        sizes.append(widget->sizeHint());
    }
    sizes.append(menu.actionGeometry(item).size());
    return sizes;
}

QImage Painted(const SkinStyle &style, double scale, QStyle::PrimitiveElement element, QStyle::State state)
{
    QImage image(QSize(64, 40) * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(QColor::fromRgba(style.Current().Colour(SkinPart::Window)));
    QPainter painter(&image);
    QStyleOptionFrame option;
    option.rect = QRect(7, 5, 47, 27);
    option.state = state;
    option.lineWidth = 2;
    option.palette = SkinPalette(style.Current());
    style.drawPrimitive(element, &option, &painter, nullptr);
    return image;
}

} // namespace

TEST(SkinStyle, EveryTargetIsLargeEnoughAndASkinChangeMovesNothing)
{
    const QList<QSize> first = TargetSizes(SampleSkins()[0]);
    for (const QSize size : first)
        EXPECT_TRUE(size.width() >= 24 && size.height() >= 24) << size.width() << " x " << size.height();
    for (const Skin &skin : SampleSkins())
        EXPECT_EQ(TargetSizes(skin), first) << skin.name.toStdString();
}

TEST(SkinStyle, LinesAreWholePixelsAtEveryScale)
{
    for (Skin skin : SampleSkins()) {
        skin.cornerRadius = 0;
        skin.isGlossy = false;
        for (SkinFill &fill : skin.fills)
            fill.bottom = fill.top;
        const SkinStyle style(skin);
        for (const double scale : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0}) {
            for (const bool isFocused : {false, true}) {
                const QStyle::State state =
                    QStyle::State_Enabled | (isFocused ? QStyle::State_HasFocus : QStyle::State_None);
                const QImage image = Painted(style, scale, QStyle::PE_PanelLineEdit, state);
                const SkinPart frame = isFocused ? SkinPart::FocusRing : SkinPart::Frame;
                const QSet<QRgb> allowed{skin.Colour(SkinPart::Window), skin.Colour(SkinPart::Base),
                                         skin.Colour(frame)};
                QSet<QRgb> found;
                for (int y = 0; y < image.height(); ++y) {
                    for (int x = 0; x < image.width(); ++x)
                        found.insert(image.pixel(x, y));
                }
                EXPECT_EQ(found, allowed) << skin.name.toStdString() << " at " << scale;
            }
        }
    }
}

TEST(SkinStyle, APictureThatCannotBeReadLeavesTheDrawnOne)
{
    Skin plain = SampleSkins()[0];
    const QByteArray square =
        R"(<svg xmlns="http://www.w3.org/2000/svg"><path fill="#ff00ff" d="M0 0h99v99h-99z"/></svg>)";
    const QStyle::State branch = QStyle::State_Enabled | QStyle::State_Children;
    SkinStyle style(plain);
    const auto arrow = [&] { return Painted(style, 1, QStyle::PE_IndicatorBranch, branch); };
    const QImage drawn = arrow();
    const QByteArray huge = R"(<svg xmlns="http://www.w3.org/2000/svg" width="1e9" height="1e9" viewBox="0 0 0 0"/>)";
    for (const QByteArray &broken : {QByteArray("<svg"), QByteArray("\x89PNG"), QByteArray(1000, '\0')}) {
        plain.pictures[u"branchClosed"_s] = broken;
        style.SetSkin(plain);
        EXPECT_EQ(arrow(), drawn);
    }
    plain.pictures[u"branchClosed"_s] = huge;
    style.SetSkin(plain);
    arrow();
    plain.pictures[u"branchClosed"_s] = square;
    style.SetSkin(plain);
    EXPECT_EQ(arrow().pixelColor(30, 18), QColor(255, 0, 255));
    plain.pictures.clear();
    style.SetSkin(plain);
    EXPECT_EQ(arrow(), drawn); // nothing of the last skin is kept
}

TEST(SkinPalette, ShadesGoFromLightToDarkAndGreyedTextIsGrey)
{
    for (const Skin &skin : SampleSkins()) {
        const QPalette palette = SkinPalette(skin);
        const QPalette::ColorRole shades[] = {QPalette::Light, QPalette::Midlight, QPalette::Button,
                                              QPalette::Mid,   QPalette::Dark,     QPalette::Shadow};
        for (size_t shade = 1; shade < std::size(shades); ++shade)
            EXPECT_LE(palette.color(shades[shade]).lightness(), palette.color(shades[shade - 1]).lightness())
                << skin.name.toStdString() << ' ' << shade;
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
            EXPECT_EQ(palette.color(QPalette::Disabled, role).rgba(), skin.Colour(SkinPart::DisabledText));
        EXPECT_NE(palette.color(QPalette::Active, QPalette::Highlight),
                  palette.color(QPalette::Inactive, QPalette::Highlight));
    }
}
