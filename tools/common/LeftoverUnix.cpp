#include "common/Leftover.h"

#include <QFile>
#include <QList>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <mutex>
#include <string>
#include <thread>

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

struct Thing
{
    QByteArray path;
    dev_t device = 0;
    ino_t number = 0;

    bool Is(const struct stat &status) const { return status.st_dev == device && status.st_ino == number; }
};

struct Registry
{
    std::timed_mutex mutex; ///< over what follows
    QList<Thing> things;
    QStringList results;
    QList<qint64> children;
};

Registry &TheRegistry()
{
    // Never destroyed: an interrupt may come while static objects are.
    static auto *registry = new Registry;
    return *registry;
}

/// All that is in an open folder, by way of its descriptor.
void Empty(int folder)
{
    std::error_code error;
    std::filesystem::directory_iterator entry("/proc/self/fd/" + std::to_string(folder), error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        std::error_code ignored;
        std::filesystem::remove_all(entry->path(), ignored);
    }
}

/// False if it is still there.
bool Remove(const Thing &thing)
{
    const char *path = thing.path.constData();
    struct stat status = {};
    if (::lstat(path, &status) != 0 || !thing.Is(status))
        return true;
    if (!S_ISDIR(status.st_mode))
        return ::unlink(path) == 0;
    const int folder = ::open(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (folder < 0)
        return false;
    if (::fstat(folder, &status) == 0 && thing.Is(status))
        Empty(folder);
    ::close(folder);
    return ::rmdir(path) == 0;
}

} // namespace

Leftover::Leftover(const QString &path) : m_path(path)
{
    Thing thing{QFile::encodeName(path)};
    struct stat status = {};
    if (::lstat(thing.path.constData(), &status) == 0) {
        thing.device = status.st_dev;
        thing.number = status.st_ino;
    }
    Registry &registry = TheRegistry();
    const std::lock_guard lock(registry.mutex);
    registry.things.append(thing);
}

Leftover::~Leftover()
{
    Registry &registry = TheRegistry();
    const QByteArray path = QFile::encodeName(m_path);
    const auto isThis = [&path](const Thing &thing) { return thing.path == path; };
    std::unique_lock lock(registry.mutex);
    const auto found = std::find_if(registry.things.cbegin(), registry.things.cend(), isThis);
    if (found == registry.things.cend())
        return;
    const Thing thing = *found;
    lock.unlock();
    Remove(thing);
    lock.lock();
    registry.things.removeIf(isThis);
}

void Leftover::Complete(const QString &result, const std::function<void()> &step)
{
    Registry &registry = TheRegistry();
    const std::lock_guard lock(registry.mutex);
    step();
    registry.results.append(result);
}

std::optional<QStringList> Leftover::RemoveAll()
{
    Registry &registry = TheRegistry();
    // A step that hangs, on a disk that does not answer, must not keep the process.
    constexpr std::chrono::milliseconds longestStep(200);
    std::unique_lock lock(registry.mutex, longestStep);
    for (const qint64 child : registry.children)
        ::kill(static_cast<pid_t>(child), SIGKILL);
    // Their contents may still be growing.
    constexpr int mostTries = 40;
    constexpr std::chrono::milliseconds pause(2);
    for (const Thing &thing : registry.things) {
        for (int tries = 0; !Remove(thing) && tries < mostTries; ++tries)
            std::this_thread::sleep_for(pause);
    }
    const bool isBetweenSteps = lock.owns_lock();
    lock.release(); // for good
    return isBetweenSteps ? std::optional(registry.results) : std::nullopt;
}

ChildOfWork::ChildOfWork(qint64 processId) : m_id(processId)
{
    Registry &registry = TheRegistry();
    const std::lock_guard lock(registry.mutex);
    registry.children.append(m_id);
}

ChildOfWork::~ChildOfWork()
{
    Registry &registry = TheRegistry();
    const std::lock_guard lock(registry.mutex);
    registry.children.removeOne(m_id);
}
