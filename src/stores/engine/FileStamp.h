#pragma once

#include <QString>

/// Which file stands at a path and when it was changed last; equal for a file that nobody has touched.
struct FileStamp
{
    quint64 device = 0, number = 0, bytes = 0;
    qint64 changed = 0; ///< its bytes, in nanoseconds since 1970
    qint64 touched = 0; ///< its bytes or its name, mode or owner
    bool operator==(const FileStamp &) const = default;
    /// The same file, whether changed or not.
    bool IsSameFile(const FileStamp &other) const { return device == other.device && number == other.number; }
    /// All zero if there is none.
    static FileStamp Of(const QString &path);
};
