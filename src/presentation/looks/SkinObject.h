#pragma once

#include "presentation/looks/Skin.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>

#include <optional>
#include <span>
#include <string_view>

/// The content of a skin file, for the program that reads it and the tool that makes and checks it.

inline constexpr char16_t SkinFileFormat[] = u"lumivara-skins";
inline constexpr int SkinFileVersion = 1;
/// Larger files are not read.
inline constexpr qint64 MaxSkinFileBytes = 16 * 1024 * 1024;
inline constexpr qsizetype MaxPictureBytes = 64 * 1024;

/// A part of a skin in its file: "window", "windowText" …
struct SkinPartRow
{
    std::u16string_view name;
    /// The name of a part above it, whose colour it takes in a skin that has none for it; empty where each skin has to
    /// have one. Parts that are added later have one, so that the skins of readers stay whole.
    std::u16string_view neighbour = {};
};

/// The table of the parts, in their order.
std::span<const SkinPartRow> SkinPartRows();
QString SkinPartName(SkinPart part);

/// The objects of a file's skins; none, with the reason in `problem`, if it is not a skin file of this version.
std::optional<QJsonArray> SkinObjects(const QByteArray &bytes, QString *problem = nullptr);

/// A name for combo box and settings: 1 to 64 printable characters without blanks around.
bool IsSkinName(const QString &name);

/// "#rrggbb", or two of them from top to bottom.
std::optional<SkinFill> ReadSkinFill(const QJsonValue &value);

/// A part's paint out of a skin's "colours": its own, or where that is missing the neighbour's. None where neither is
/// there or the one that counts is no colour.
std::optional<SkinFill> ReadPartFill(const QJsonObject &colours, QStringView part,
                                     std::span<const SkinPartRow> rows = SkinPartRows());

/// The skin of an object that holds each required colour; numbers are brought into their limits, pictures that are none
/// left out.
std::optional<Skin> ReadSkin(const QJsonObject &object);

/// Why a picture can't be shown: malformed, not a simple drawing, or with references. Empty for a valid one.
QString PictureProblem(const QByteArray &svg);
