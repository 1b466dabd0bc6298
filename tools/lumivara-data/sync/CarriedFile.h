#pragma once

#include <QFile>
#include <QString>

/// Opens a file in a folder that some program carries between machines, and that others may write: never a link, a pipe
/// or a device, nothing of another user but the folder's owner and root, and none of more than LargestCarried bytes.
/// `file` has no name. Returns why it is not opened; nothing if it is.
QString OpenCarried(const QString &path, QFile &file);

/// Tells this user on this machine from all others.
QByteArray ThisUserHere();

inline constexpr qint64 LargestCarried = qint64{1} << 30;
