#pragma once

#include "presentation/looks/SkinObject.h"

#include <QFile>
#include <QJsonDocument>
#include <QString>

/// A skin with every colour: texts black or white, all else the other; `colours` over them.
inline QJsonObject WholeSkin(const QString &name, bool isDark = false, const QJsonObject &colours = {})
{
    const QString dark = u"#101010"_qs, light = u"#f8f8f8"_qs;
    QJsonObject all;
    for (int part = 0; part < static_cast<int>(SkinPart::Count); ++part) {
        const QString key = SkinPartName(static_cast<SkinPart>(part));
        const bool isInk =
            key.endsWith(u"Text"_qs) || key.endsWith(u"rame"_qs) ||
            QStringList{u"text"_qs, u"link"_qs, u"focusRing"_qs, u"iconInk"_qs, u"iconAccent"_qs}.contains(key);
        all[key] = isInk == isDark ? light : dark;
    }
    for (auto colour = colours.begin(); colour != colours.end(); ++colour)
        all[colour.key()] = *colour;
    return {{u"name"_qs, name}, {u"dark"_qs, isDark}, {u"colours"_qs, all}};
}

inline QByteArray SkinDocument(const QJsonArray &skins)
{
    return QJsonDocument(QJsonObject{{u"format"_qs, QString::fromUtf16(SkinFileFormat)},
                                     {u"version"_qs, SkinFileVersion},
                                     {u"skins"_qs, skins}})
        .toJson();
}

inline bool WriteBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}
