#pragma once

#include "presentation/looks/SkinObject.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

/// What is wrong with the skins of a file, one text a finding, each with the skin's name in front.
QStringList CheckSkins(const QJsonArray &skins);

/// What is wrong with a skin's "colours": those that are required and missing, those that are none, unknown ones.
QStringList CheckColours(const QJsonObject &colours, std::span<const SkinPartRow> rows = SkinPartRows());
