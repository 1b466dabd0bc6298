#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QString>

/// The skins of a folder's *.skin files in the order of the file names, each whole: what it takes from the skin named
/// by "based" and the text of its pictures are in it, "based" is not. Throws ToolError with the file's name.
QJsonArray ReadSkinSources(const QString &folder);

/// The file that the program reads: one skin a line, the same bytes for the same skins.
QByteArray SkinFileBytes(const QJsonArray &skins);
