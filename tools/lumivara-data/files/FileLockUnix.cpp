#include "lumivara-data/files/FileLock.h"

#include "base/Messages.h"
#include "common/Tool.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Who can't write another user's file can still lock it.
int OpenLock(const QByteArray &path)
{
    constexpr int careful = O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    constexpr mode_t readableByAll = 0644;
    int descriptor = ::open(path.constData(), O_RDWR | careful);
    if (descriptor < 0 && (errno == EACCES || errno == EROFS))
        descriptor = ::open(path.constData(), O_RDONLY | careful);
    if (descriptor >= 0 || errno != ENOENT)
        return descriptor;
    descriptor = ::open(path.constData(), O_RDWR | O_CREAT | O_EXCL | careful, readableByAll);
    if (descriptor >= 0)
        ::fchmod(descriptor, readableByAll); // it holds nothing, whatever the umask
    return descriptor;
}

} // namespace

FileLock::FileLock(const QString &path) : m_path(path) {}

FileLock::~FileLock()
{
    m_leftover.reset();
    ::close(m_held);
}

bool FileLock::Take()
{
    const QByteArray name = QFile::encodeName(m_path);
    // The file goes with each holder, so it may be another one once it is locked.
    for (;;) {
        const int descriptor = OpenLock(name);
        if (descriptor < 0 && (errno == EEXIST || errno == ENOENT) && QFileInfo(m_path).dir().exists())
            continue;
        if (descriptor < 0 && errno == ELOOP)
            throw ToolError(Sentence({u"%1: đang chiếm chỗ", u"%1: is in the way"}).arg(m_path));
        if (descriptor < 0)
            throw ToolError(
                Sentence({u"%1: không ghi được", u"%1: cannot be written"}).arg(QFileInfo(m_path).absolutePath()));
        struct stat status = {}, named = {};
        const bool isLock = ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink <= 1;
        const bool isFree = isLock && ::flock(descriptor, LOCK_EX | LOCK_NB) == 0;
        if (isFree && ::lstat(name.constData(), &named) == 0 && named.st_ino == status.st_ino &&
            named.st_dev == status.st_dev) {
            m_held = descriptor;
            m_leftover.emplace(m_path);
            return true;
        }
        const int reason = errno;
        ::close(descriptor);
        if (!isLock)
            throw ToolError(Sentence({u"%1: đang chiếm chỗ", u"%1: is in the way"}).arg(m_path));
        if (!isFree && reason == EWOULDBLOCK)
            return false;
        if (!isFree && reason != EINTR)
            throw ToolError(Sentence({u"%1: không khóa được: %2", u"%1: cannot be locked: %2"})
                                .arg(m_path, qt_error_string(reason)));
    }
}
