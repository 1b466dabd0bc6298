#include "stores/engine/FileStamp.h"

#include <QFile>

#include <sys/stat.h>

namespace {

qint64 Nanoseconds(const timespec &moment)
{
    constexpr qint64 second = 1'000'000'000;
    return moment.tv_sec * second + moment.tv_nsec;
}

} // namespace

FileStamp FileStamp::Of(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return {};
    return {static_cast<quint64>(status.st_dev), static_cast<quint64>(status.st_ino),
            static_cast<quint64>(status.st_size), Nanoseconds(status.st_mtim), Nanoseconds(status.st_ctim)};
}
