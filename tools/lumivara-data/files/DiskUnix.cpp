#include "lumivara-data/files/Disk.h"

#include <QFile>

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

bool BringToDisk(const QString &path)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool done = ::fsync(descriptor) == 0;
    ::close(descriptor);
    return done;
}

bool ExchangeFolders(const QString &a, const QString &b)
{
    return ::renameat2(AT_FDCWD, QFile::encodeName(a).constData(), AT_FDCWD, QFile::encodeName(b).constData(),
                       RENAME_EXCHANGE) == 0;
}
