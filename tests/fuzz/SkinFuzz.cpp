#include "fuzz/Fuzz.h"

#include "presentation/SkinObject.h"

FUZZ_TARGET(Skin)
{
    QString problem;
    const std::optional<QJsonArray> objects = SkinObjects(input, &problem);
    REQUIRE(objects.has_value() == problem.isEmpty());
    if (objects) {
        for (const QJsonValue &object : *objects)
            ReadSkin(object.toObject());
    }
    // A picture by itself: within a file's quotes the fuzzer would hardly ever make one.
    PictureProblem(input);
}
