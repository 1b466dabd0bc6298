#pragma once

#include "presentation/looks/Skin.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>

#include <optional>

/// The content of a skin file, for the program that reads it and the tool that makes and checks it.

inline constexpr char16_t SkinFileFormat[] = u"lumivara-skins";
inline constexpr int SkinFileVersion = 1;
/// Larger files are not read.
inline constexpr qint64 MaxSkinFileBytes = 16 * 1024 * 1024;
inline constexpr qsizetype MaxPictureBytes = 64 * 1024;

/// The name of a part in a skin file: "window", "windowText" …
QString SkinPartName(SkinPart part);

/// The objects of a file's skins; none, with the reason in `problem`, if it is not a skin file of this version.
std::optional<QJsonArray> SkinObjects(const QByteArray &bytes, QString *problem = nullptr);

/// A name for combo box and settings: 1 to 64 printable characters without blanks around.
bool IsSkinName(const QString &name);

/// "#rrggbb", or two of them from top to bottom.
std::optional<SkinFill> ReadSkinFill(const QJsonValue &value);

/// The skin of an object; none unless it has every colour. Numbers are clamped to their limits, invalid pictures
/// ignored.
std::optional<Skin> ReadSkin(const QJsonObject &object);

/// Why a picture can't be shown: malformed, not a simple drawing, or with references. Empty for a valid one.
QString PictureProblem(const QByteArray &svg);
