#include "toolkit/Fonts.h"

#include <QFont>
#include <QFontDatabase>
#include <QStringList>

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
