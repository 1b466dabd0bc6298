#include "toolkit/Fonts.h"

#include <QAbstractButton>
#include <QFont>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QScreen>
#include <QStringList>
#include <QWidget>

#include <algorithm>

namespace {

const QString pageFont = QStringLiteral("Segoe UI");
constexpr qreal designDpi = 96;
constexpr qreal pointsPerInch = 72;

qreal TextScale()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen ? screen->logicalDotsPerInchY() / designDpi : 1;
}

/// With every letter of Pāli and Vietnamese, the best first.
QStringList StandIns()
{
    return {QStringLiteral("Noto Sans"), QStringLiteral("DejaVu Sans")};
}

QSize Grown(QSize size)
{
    return {GrownPixels(size.width()), GrownPixels(size.height())};
}

void GrowControl(QWidget &control)
{
    control.setMinimumSize(Grown(control.minimumSize()));
    const QSize most = control.maximumSize();
    if (most.width() < QWIDGETSIZE_MAX)
        control.setMaximumWidth(GrownPixels(most.width()));
    if (most.height() < QWIDGETSIZE_MAX)
        control.setMaximumHeight(GrownPixels(most.height()));
    if (auto *button = qobject_cast<QAbstractButton *>(&control))
        button->setIconSize(Grown(button->iconSize()));
}

} // namespace

bool IsPageFontInstalled()
{
    return QFontDatabase::hasFamily(pageFont);
}

QString PageFontFamily()
{
    if (IsPageFontInstalled())
        return pageFont;
    const QStringList standIns = StandIns();
    const auto installed = std::find_if(standIns.begin(), standIns.end(),
                                        [](const QString &family) { return QFontDatabase::hasFamily(family); });
    return installed == standIns.end() ? pageFont : *installed;
}

void InstallFontSubstitutes()
{
    if (IsPageFontInstalled())
        return;
    for (const QString &family : {pageFont, QStringLiteral("Segoe UI Semibold")})
        QFont::insertSubstitutions(family, StandIns());
}

int GrownPixels(int pixels)
{
    return qRound(pixels * TextScale());
}

void SetFontHeight(QFont &font, int pixels)
{
    font.setPointSizeF(pixels * pointsPerInch / designDpi);
}

void SetWindowFont(QWidget &window)
{
    constexpr int height = 13;
    QFont font(pageFont);
    SetFontHeight(font, height);
    window.setFont(font);
}

void GrowWithText(QWidget &window)
{
    if (TextScale() == 1)
        return;
    const QSize screen = window.screen()->availableSize();
    const QSize size = Grown(window.size());
    GrowControl(window);
    window.setMinimumSize(window.minimumSize().boundedTo(screen));
    window.resize(size.boundedTo(screen));
    const QList<QWidget *> controls = window.findChildren<QWidget *>();
    for (QWidget *control : controls)
        GrowControl(*control);
}
