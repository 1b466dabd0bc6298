#include "stores/engine/DatabaseHandles.h"

#include <QFile>

#include <sys/stat.h>

FileIdentity FileIdentity::Of(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return {};
    return {static_cast<quint64>(status.st_dev), static_cast<quint64>(status.st_ino)};
}
