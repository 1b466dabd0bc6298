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

#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// One of each control that a finger or a shaking hand must hit.
std::vector<std::unique_ptr<QWidget>> Targets(QStyle &style)
{
    std::vector<std::unique_ptr<QWidget>> widgets;
    const auto add = [&](auto widget) {
        widget->setStyle(&style);
        widgets.push_back(std::move(widget));
    };
    add(std::make_unique<QPushButton>(u"OK"_s));
    auto tool = std::make_unique<QToolButton>();
    tool->setIconSize({14, 14});
    tool->setIcon(QPixmap(14, 14));
    add(std::move(tool));
    add(std::make_unique<QLineEdit>());
    auto combo = std::make_unique<QComboBox>();
    combo->addItem(u"Việt"_s);
    add(std::move(combo));
    add(std::make_unique<QSpinBox>());
    add(std::make_unique<QCheckBox>(u"Việt"_s));
    add(std::make_unique<QRadioButton>(u"Việt"_s));
    auto tabs = std::make_unique<QTabBar>();
    tabs->addTab(u"Việt"_s);
    add(std::move(tabs));
    return widgets;
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

TEST(SkinStyle, EveryTargetIsLargeEnoughAndGrowsWithItsText)
{
    constexpr int leastHeight = 24;
    SkinStyle style(SampleSkins()[0]);
    for (const auto &widget : Targets(style)) {
        QFont font = widget->font();
        font.setPixelSize(13);
        widget->setFont(font);
        const QSize small = widget->sizeHint();
        EXPECT_GE(small.height(), leastHeight) << widget->metaObject()->className();
        EXPECT_GE(small.width(), leastHeight) << widget->metaObject()->className();
        font.setPixelSize(39);
        widget->setFont(font);
        if (!qobject_cast<QToolButton *>(widget.get())) {
            EXPECT_GE(widget->sizeHint().height(), widget->fontMetrics().height()) << widget->metaObject()->className();
        }
    }
    QMenu menu;
    menu.setStyle(&style);
    menu.addAction(u"Việt"_s);
    menu.addSeparator();
    QAction *checked = menu.addAction(u"Pāli"_s);
    checked->setCheckable(true);
    EXPECT_GE(menu.actionGeometry(checked).height(), leastHeight);
    EXPECT_GT(menu.actionGeometry(menu.actions()[1]).height(), 0);
}

TEST(SkinStyle, ASkinChangeMovesNothing)
{
    // Each with a style that knew no other skin before, as after a start with it.
    const auto sizes = [](const Skin &skin) {
        SkinStyle style(skin);
        QList<QSize> found;
        for (const auto &widget : Targets(style))
            found.append(widget->sizeHint());
        return found;
    };
    for (const Skin &skin : SampleSkins())
        EXPECT_EQ(sizes(skin), sizes(SampleSkins()[0])) << skin.name.toStdString();
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
    const QByteArray square = R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 16 16">
<path fill="#ff00ff" d="M2 2h12v12h-12z"/></svg>)";
    const QByteArray huge = R"(<svg xmlns="http://www.w3.org/2000/svg" width="1e9" height="1e9" viewBox="0 0 0 0"/>)";
    const QStyle::State branch = QStyle::State_Enabled | QStyle::State_Children;
    SkinStyle style(plain);
    const auto arrow = [&] { return Painted(style, 1, QStyle::PE_IndicatorBranch, branch); };
    const QImage drawn = arrow();
    for (const QByteArray &broken : {QByteArray(), QByteArray("<svg"), QByteArray("\x89PNG"), QByteArray(1000, '\0')}) {
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
