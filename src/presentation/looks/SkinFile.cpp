#include "presentation/looks/SkinFile.h"

#include "presentation/looks/SkinObject.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

QJsonArray ReadObjects(const QString &path)
{
    // Opening a pipe would block; for a folder Qt's own message differs from the system's.
    if (const QFileInfo info(path); info.exists() && !info.isFile())
        throw SkinFileError(u"%1: %2"_s.arg(path, qt_error_string(info.isDir() ? EISDIR : EINVAL)));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw SkinFileError(u"%1: %2"_s.arg(path, file.errorString()));
    const QByteArray bytes = file.read(std::min(file.size(), MaxSkinFileBytes + 1));
    return bytes.size() > MaxSkinFileBytes ? QJsonArray() : SkinObjects(bytes).value_or(QJsonArray());
}

} // namespace

QStringList SkinNames(const QString &path)
{
    QStringList names;
    const QJsonArray objects = ReadObjects(path);
    for (const auto &object : objects) {
        const QString name = object.toObject().value("name"_L1).toString();
        if (IsSkinName(name))
            names += name;
    }
    return names;
}

std::optional<Skin> LoadSkin(const QString &path, const QString &name)
{
    const QJsonArray objects = ReadObjects(path);
    if (!IsSkinName(name))
        return std::nullopt;
    for (const auto &value : objects) {
        const QJsonObject object = value.toObject();
        if (object.value("name"_L1).toString() == name)
            return ReadSkin(object);
    }
    return std::nullopt;
}
