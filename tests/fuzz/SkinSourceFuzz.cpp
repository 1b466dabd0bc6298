#include "fuzz/ToolInput.h"

#include "lumivara-skins/SkinCheck.h"
#include "lumivara-skins/SkinSource.h"
#include "presentation/looks/SkinObject.h"

#include <QDir>

FUZZ_TARGET(SkinSource)
{
    const QString folder = ScratchPath(QStringLiteral("skins"));
    QDir().mkpath(folder);
    const QList<QByteArray> files = FuzzedFiles(input, 2);
    ScratchFileWith(QStringLiteral("skins/01-Base.skin"), files[0]);
    ScratchFileWith(QStringLiteral("skins/02-Own.skin"), files[1]);
    ReadOrRefuse(folder, [&] {
        const QJsonArray skins = ReadSkinSources(folder);
        const std::optional<QJsonArray> again = SkinObjects(SkinFileBytes(skins));
        REQUIRE(skins.size() == 2 && (!again || *again == skins));
        CheckSkins(skins);
    });
}
