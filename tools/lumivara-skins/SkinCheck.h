#pragma once

#include <QJsonArray>
#include <QStringList>

/// What is wrong with the skins of a file, one text a finding, each with the skin's name in front.
QStringList CheckSkins(const QJsonArray &skins);
