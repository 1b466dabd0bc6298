#include "toolkit/Fonts.h"

#include <QFont>
#include <QFontDatabase>
#include <QStringList>
#include <QWidget>

namespace {

const QString pageFont = QStringLiteral("Segoe UI");

} // namespace

bool IsPageFontInstalled()
{
    return QFontDatabase::hasFamily(pageFont);
}

void InstallFontSubstitutes()
{
    if (!IsPageFontInstalled())
        QFont::insertSubstitutions(pageFont, {QStringLiteral("Noto Sans"), QStringLiteral("DejaVu Sans")});
}

void SetWindowFont(QWidget &window)
{
    constexpr int height = 13; // pixels
    QFont font(pageFont);
    font.setPixelSize(height);
    window.setFont(font);
}

void SmoothFont(QWidget &control)
{
    QFont font = control.font();
    font.setStyleStrategy(QFont::PreferAntialias);
    control.setFont(font);
}
