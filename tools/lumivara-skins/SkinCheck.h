#pragma once

#include <QJsonArray>
#include <QStringList>

/// What is wrong with the skins of a file, one text a finding, each with the skin's name in front.
QStringList CheckSkins(const QJsonArray &skins);

/// The contrast of two opaque colours, 1 to 21, by the relative luminance of WCAG 2.
double Contrast(quint32 one, quint32 other);
