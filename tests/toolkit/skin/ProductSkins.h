#pragma once

#include "presentation/looks/SkinFile.h"
#include "support/TestSupport.h"

#include <gmock/gmock.h>

/// Every skin of the product: of every kind that a style must paint.
inline QList<Skin> ProductSkins()
{
    const QString file = ProductFolder() + u"AllSkins.skinres"_qs;
    QList<Skin> skins;
    for (const QString &name : SkinNames(file))
        skins.append(LoadSkin(file, name).value());
    EXPECT_EQ(skins.size(), 28);
    return skins;
}
