#pragma once

#include <QString>

/// Waits until a file's bytes, or a folder's names, are on the disk. False if they can't be brought there.
bool BringToDisk(const QString &path);
/// Lets two folders change names in one step. False where the file system can't.
bool ExchangeFolders(const QString &a, const QString &b);
