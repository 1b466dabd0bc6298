#include "stores/settings/SettingsDisk.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::chrono::microseconds RetryPause(500);

class FileLock final : public SettingsDisk::Lock
{
public:
    explicit FileLock(int descriptor) : m_descriptor(descriptor) {}
    ~FileLock() override
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;

private:
    int m_descriptor;
};

class RealDisk final : public SettingsDisk
{
public:
    ReadResult Read(const QString &path, QByteArray &bytes, QString &errorText) override
    {
        if (IsAbsent(path))
            return ReadResult::Missing;
        // Opening a pipe of that name would wait for its other end. A link is the user's own way to keep the file
        // elsewhere.
        const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        struct stat status = {};
        const bool isFile = descriptor >= 0 && ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
        QFile file;
        if (!isFile || !file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
            errorText = qt_error_string(descriptor < 0 ? errno : EACCES);
            ::close(descriptor);
            return ReadResult::Failed;
        }
        QByteArray content = file.readAll();
        if (file.error() != QFile::NoError) {
            errorText = file.errorString();
            return ReadResult::Failed;
        }
        bytes = std::move(content);
        return ReadResult::Read;
    }

    bool MayWrite(const QString &path, QString &errorText) override
    {
        const QString folder = QFileInfo(path).absolutePath();
        if (!MayWriteExisting(folder) || (QFileInfo::exists(path) && !MayWriteExisting(path))) {
            errorText = qt_error_string(errno);
            return false;
        }
        return true;
    }

    QStringList FileNames(const QString &folder) override { return QDir(folder).entryList(QDir::Files | QDir::Hidden); }

    bool MakeFolder(const QString &folder, QString &errorText) override
    {
        if (QDir().mkpath(folder))
            return true;
        errorText = qt_error_string(errno);
        return false;
    }

    bool WriteAtomically(const QString &path, const QByteArray &bytes, QString &errorText) override
    {
        QSaveFile file(path);
        // Unbuffered, because commit() does not notice a failure to flush the buffer; on a full disk it would replace
        // the settings by an empty file.
        if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
            errorText = file.errorString();
            return false;
        }
        if (file.write(bytes) == bytes.size() && file.commit())
            return true;
        // A short write sets no error.
        errorText = file.error() == QFileDevice::NoError ? qt_error_string(ENOSPC) : file.errorString();
        return false;
    }

    bool Rename(const QString &from, const QString &to, QString &errorText) override
    {
        QFile file(from);
        if (file.rename(to))
            return true;
        errorText = file.errorString();
        return false;
    }

    std::unique_ptr<Lock> Acquire(const QString &lockFile, std::chrono::milliseconds patience,
                                  QString &errorText) override
    {
        // The kernel's lock and not a file with a process id: it ends with its holder in any case.
        const int descriptor = ::open(QFile::encodeName(lockFile).constData(),
                                      O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600);
        if (descriptor < 0) {
            errorText = qt_error_string(errno);
            return nullptr;
        }
        auto lock = std::make_unique<FileLock>(descriptor);
        const auto end = std::chrono::steady_clock::now() + patience;
        // A lock on the folder, held while waiting for the file's: otherwise a copy that takes the lock again at once
        // would always beat one that polls. Where folders can't be locked, the file's lock must do.
        const int folder = ::open(QFile::encodeName(QFileInfo(lockFile).absolutePath()).constData(),
                                  O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        const FileLock door(folder);
        while (folder >= 0 && ::flock(folder, LOCK_EX | LOCK_NB) != 0 && (errno == EWOULDBLOCK || errno == EINTR) &&
               std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(RetryPause);
        while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
            const int reason = errno;
            // Some network folders have no locks; writing without one is better than no settings at all.
            if (reason == ENOLCK || reason == EOPNOTSUPP || reason == ENOSYS)
                return lock;
            if (reason != EWOULDBLOCK && reason != EINTR) {
                errorText = qt_error_string(reason);
                return nullptr;
            }
            if (std::chrono::steady_clock::now() >= end) {
                errorText = qt_error_string(EBUSY);
                return nullptr;
            }
            std::this_thread::sleep_for(RetryPause);
        }
        return lock;
    }

    QDateTime Now() override { return QDateTime::currentDateTime(); }

private:
    static bool MayWriteExisting(const QString &path)
    {
        return ::faccessat(AT_FDCWD, QFile::encodeName(path).constData(), W_OK, AT_EACCESS) == 0;
    }

    /// As opposed to a name that cannot be looked at.
    static bool IsAbsent(const QString &path)
    {
        return ::faccessat(AT_FDCWD, QFile::encodeName(path).constData(), F_OK, AT_EACCESS) != 0 &&
               (errno == ENOENT || errno == ENOTDIR);
    }
};

} // namespace

SettingsDisk &RealSettingsDisk()
{
    static RealDisk disk;
    return disk;
}
