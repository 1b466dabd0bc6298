#pragma once

#include <QString>

class QTemporaryDir;

/// Copies a database file to a folder of our own and gives the copy's path. The engine writes into whatever it opens
/// (header page, lock files beside it) and refuses some files without write permission: who only reads must do neither.
/// Throws ToolError, also where an interrupt was noted.
QString PrivateCopy(const QString &path, const QTemporaryDir &folder);
