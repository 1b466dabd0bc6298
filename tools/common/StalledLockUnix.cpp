#include "common/StalledLock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/syscall.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

bool IsLockFile(const QString &path)
{
    return QFileInfo(path).fileName().startsWith("fb"_L1);
}

/// The lock file that is mapped to an address.
QString FileAt(quint64 address)
{
    QFile maps(u"/proc/self/maps"_s);
    if (!maps.open(QIODevice::ReadOnly))
        return {};
    // START-END MODE OFFSET DEVICE INODE   PATH
    for (const QByteArray &line : maps.readAll().split('\n')) {
        const QByteArray range = line.left(line.indexOf(' '));
        const quint64 start = range.left(range.indexOf('-')).toULongLong(nullptr, 16);
        const quint64 end = range.mid(range.indexOf('-') + 1).toULongLong(nullptr, 16);
        if (address < start || address >= end)
            continue;
        const QString path = QFile::decodeName(line.mid(line.indexOf('/')));
        return line.contains('/') && IsLockFile(path) ? path : QString();
    }
    return {};
}

/// What one thread waits for, by the system call that it is in.
QString FileThatHolds(const QString &thread)
{
    QFile file(u"/proc/self/task/%1/syscall"_s.arg(thread));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    // Number and arguments; a thread that runs has one word.
    const QByteArrayList words = file.readAll().split(' ');
    constexpr qsizetype timeout = 4;
    if (words.size() <= timeout)
        return {};
    const auto argument = [&](qsizetype index) { return words[index + 1].toULongLong(nullptr, 16); };
    if (words[0].toInt() == SYS_flock) {
        const QString path = QFile::symLinkTarget(u"/proc/self/fd/%1"_s.arg(argument(0)));
        return IsLockFile(path) ? path : QString();
    }
    // The engine's own threads wait there for messages, always, and without a time. A mutex has no time either, but the
    // thread of the work is none of the engine's.
    const bool isWork = thread.toLongLong() == ::getpid();
    if (words[0].toInt() == SYS_futex && (argument(3) != 0 || isWork))
        return FileAt(argument(0));
    return {};
}

} // namespace

QString LockWaitedFor()
{
    for (const QString &thread : QDir(u"/proc/self/task"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (const QString file = FileThatHolds(thread); !file.isEmpty())
            return file;
    }
    return {};
}

QString StalledLock::Look()
{
    constexpr qint64 patienceMilliseconds = 5000;
    const QString file = LockWaitedFor();
    if (file != m_file) {
        m_file = file;
        m_isTold = false;
        m_since.start();
    }
    if (file.isEmpty() || m_isTold || m_since.elapsed() < patienceMilliseconds)
        return {};
    m_isTold = true;
    return file;
}
