#include "toolkit/program/Fonts.h"

#include "toolkit/program/WindowPlace.h"

#include <QAbstractButton>
#include <QFont>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QLibrary>
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

/// Fonts with every letter of Pāli and Vietnamese, the best first.
QStringList StandIns()
{
    return {QStringLiteral("Noto Sans"), QStringLiteral("DejaVu Sans")};
}

/// Chromium ignores Qt's substitutes and asks the system for each family of a page's list in turn: without this, a list
/// that continues with a serif family would be drawn in that one. The rule applies to this process only. Without
/// a matching fontconfig, pages fall back to Chromium's standard families.
void TellEngine(const QString &family, const QString &standIn)
{
    using LoadRules = int (*)(void *configuration, const unsigned char *rules, int isComplaining);
    using Current = void *(*)();
    const QString library = QStringLiteral("fontconfig");
    const auto current = reinterpret_cast<Current>(QLibrary::resolve(library, 1, "FcConfigGetCurrent"));
    const auto loadRules = reinterpret_cast<LoadRules>(QLibrary::resolve(library, 1, "FcConfigParseAndLoadFromMemory"));
    void *configuration = current ? current() : nullptr;
    if (!configuration || !loadRules)
        return;
    const QByteArray rules = QStringLiteral("<fontconfig><match target=\"pattern\">"
                                            "<test name=\"family\" qual=\"any\"><string>%1</string></test>"
                                            "<edit name=\"family\" mode=\"assign\" binding=\"same\"><string>%2</string>"
                                            "</edit></match></fontconfig>")
                                 .arg(family, standIn)
                                 .toUtf8();
    loadRules(configuration, reinterpret_cast<const unsigned char *>(rules.constData()), 0);
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
    // Asked only once: afterwards the substitute answers to the name.
    static const bool isInstalled = QFontDatabase::hasFamily(pageFont);
    return isInstalled;
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
    const QStringList families{pageFont, QStringLiteral("Segoe UI Semibold")};
    for (const QString &family : families)
        QFont::insertSubstitutions(family, StandIns());
    for (const QString &family : families)
        TellEngine(family, PageFontFamily());
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
    const QSize room = RoomOnScreen(window);
    window.setMinimumSize(Grown(window.minimumSize()).boundedTo(room));
    window.resize(Grown(window.size()).boundedTo(room));
    if (TextScale() == 1)
        return;
    const QList<QWidget *> controls = window.findChildren<QWidget *>();
    for (QWidget *control : controls)
        GrowControl(*control);
}
