#include "stores/Schema.h"

QString ContentColumn(int mode)
{
    switch (mode) {
    case PageMode::Pali:
        return QStringLiteral("CONTENT_VIC_PAL");
    case PageMode::Vietnamese:
        return QStringLiteral("CONTENT_VIC_VIE");
    case PageMode::English:
        return QStringLiteral("CONTENT_VIC_ENG");
    case PageMode::Parallel:
        return QStringLiteral("CONTENT_VIC_PAL_VIE");
    default:
        return {};
    }
}
