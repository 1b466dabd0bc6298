#pragma once

#include "presentation/SkinObject.h"

#include <QFile>
#include <QJsonDocument>
#include <QString>

/// A skin with every colour: texts black or white, all else the other; `colours` over them.
inline QJsonObject WholeSkin(const QString &name, bool isDark = false, const QJsonObject &colours = {})
{
    const QString dark = QStringLiteral("#101010"), light = QStringLiteral("#f8f8f8");
    QJsonObject all;
    for (int part = 0; part < static_cast<int>(SkinPart::Count); ++part) {
        const QString key = SkinPartName(static_cast<SkinPart>(part));
        const bool isInk = key.endsWith(QStringLiteral("Text")) || key.endsWith(QStringLiteral("rame")) ||
                           QStringList{QStringLiteral("text"), QStringLiteral("link"), QStringLiteral("focusRing"),
                                       QStringLiteral("iconInk"), QStringLiteral("iconAccent")}
                               .contains(key);
        all[key] = isInk == isDark ? light : dark;
    }
    for (auto colour = colours.begin(); colour != colours.end(); ++colour)
        all[colour.key()] = *colour;
    return {{QStringLiteral("name"), name}, {QStringLiteral("dark"), isDark}, {QStringLiteral("colours"), all}};
}

inline QByteArray SkinDocument(const QJsonArray &skins)
{
    return QJsonDocument(QJsonObject{{QStringLiteral("format"), QString::fromUtf16(SkinFileFormat)},
                                     {QStringLiteral("version"), SkinFileVersion},
                                     {QStringLiteral("skins"), skins}})
        .toJson();
}

inline bool WriteBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}
