#include "fuzz/Fuzz.h"

#include "presentation/looks/SkinObject.h"

namespace {

/// What the style that paints a skin relies on.
void CheckSkin(const Skin &skin)
{
    REQUIRE(skin.cornerRadius >= 0 && skin.cornerRadius <= 12);
    REQUIRE(skin.lineWidth >= 1 && skin.lineWidth <= 3 && skin.focusWidth >= 1 && skin.focusWidth <= 4);
    for (const SkinFill &fill : skin.fills)
        REQUIRE(fill.top >> 24 == 0xFF && fill.bottom >> 24 == 0xFF);
    for (const QByteArray &picture : skin.pictures)
        REQUIRE(PictureProblem(picture).isEmpty());
}

} // namespace

FUZZ_TARGET(Skin)
{
    QString problem;
    const std::optional<QJsonArray> objects = SkinObjects(input, &problem);
    REQUIRE(objects.has_value() == problem.isEmpty());
    if (objects) {
        for (const QJsonValue &object : *objects) {
            if (const std::optional<Skin> skin = ReadSkin(object.toObject()))
                CheckSkin(*skin);
        }
    }
    // A picture by itself: within a file's quotes the fuzzer would hardly ever make one.
    PictureProblem(input);
}
