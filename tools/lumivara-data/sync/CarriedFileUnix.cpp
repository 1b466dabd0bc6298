#include "lumivara-data/sync/CarriedFile.h"

#include <QFileInfo>
#include <QSysInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// What may not be read of an open file; nothing if it may.
QString FaultOf(int descriptor, const struct stat &folder)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        return qt_error_string(errno);
    if (!S_ISREG(status.st_mode))
        return u"is no regular file"_s;
    // Whoever may write a shared folder could else change the marks of everyone who uses it.
    if (status.st_uid != ::geteuid() && status.st_uid != 0 && status.st_uid != folder.st_uid)
        return u"belongs to another user"_s;
    if (status.st_size > LargestCarried)
        return u"is larger than %1 MiB"_s.arg(LargestCarried >> 20);
    return {};
}

} // namespace

QByteArray ThisUserHere()
{
    return QSysInfo::machineUniqueId() + '-' + QByteArray::number(::geteuid());
}

QString OpenCarried(const QString &path, QFile &file)
{
    struct stat folder = {};
    if (::stat(QFile::encodeName(QFileInfo(path).absolutePath()).constData(), &folder) != 0)
        return qt_error_string(errno);
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return errno == ELOOP ? u"is a link"_s : qt_error_string(errno);
    const QString fault = FaultOf(descriptor, folder);
    if (fault.isEmpty() && file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return {};
    ::close(descriptor);
    return fault.isEmpty() ? file.errorString() : fault;
}
