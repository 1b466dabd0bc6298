#include "lumivara-data/files/PrivateFolder.h"

#include "base/Messages.h"
#include "common/Tool.h"
#include "stores/engine/Database.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// The folder itself, locked; -1 if another process has it, or it is none, or another user's.
int Locked(const QString &path)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor < 0)
        return -1;
    struct stat status = {}, named = {};
    const bool isOurs = ::fstat(descriptor, &status) == 0 && status.st_uid == ::geteuid() &&
                        ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 &&
                        ::lstat(QFile::encodeName(path).constData(), &named) == 0 && named.st_ino == status.st_ino &&
                        named.st_dev == status.st_dev;
    if (isOurs)
        return descriptor;
    ::close(descriptor);
    return -1;
}

/// Killed processes hold no lock.
void RemoveDead(const QString &prefix)
{
    const QFileInfo info(prefix);
    QString pattern;
    for (const QChar letter : info.fileName())
        pattern += u"[]*?\\"_s.contains(letter) ? u"[%1]"_s.arg(letter) : QString(letter);
    for (const QFileInfo &dead :
         QDir(info.absolutePath())
             .entryInfoList({pattern + u"-??????"_s}, QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot)) {
        const int descriptor = Locked(dead.filePath());
        if (descriptor < 0)
            continue;
        Leftover(dead.filePath());
        ::close(descriptor);
    }
}

} // namespace

PrivateFolder::PrivateFolder(const QString &prefix)
{
    RemoveDead(prefix);
    for (;;) {
        QByteArray name = QFile::encodeName(prefix + u"-XXXXXX"_s);
        if (!::mkdtemp(name.data()))
            throw ToolError(Sentence({u"%1: không ghi được: %2", u"%1: cannot be written: %2"})
                                .arg(QFileInfo(prefix).absolutePath(), qt_error_string(errno)));
        const QString path = QFile::decodeName(name);
        // Another process may have taken it for a dead one before it was locked.
        if (Hold(path))
            return;
    }
}

PrivateFolder::~PrivateFolder()
{
    m_leftover.reset();
    ::close(m_held);
}

bool PrivateFolder::Hold(const QString &path)
{
    m_held = Locked(path);
    if (m_held < 0)
        return false;
    m_leftover.emplace(path);
    return true;
}

QString PrivateFolder::TemporaryPrefix()
{
    return QDir::tempPath() + u"/lumivara-work"_s;
}

QString PrivateFolder::Path(const QString &name) const
{
    return name.isEmpty() ? m_leftover->Path() : m_leftover->Path() + u'/' + name;
}

void UsePrivateLocks()
{
    static const PrivateFolder folder(PrivateFolder::TemporaryPrefix());
    TpFIBDatabase::SetLockFolder(folder.Path());
}
