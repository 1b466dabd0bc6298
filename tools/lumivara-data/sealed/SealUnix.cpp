#include "lumivara-data/sealed/Seal.h"

#include <QFile>

#include <fcntl.h>
#include <linux/landlock.h>
#include <seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <csignal>
#include <initializer_list>

namespace {

// The header of the system may be older than the kernel; numbers of linux/landlock.h.
constexpr quint64 MayRefer = 1U << 13;    // from the second version on
constexpr quint64 MayTruncate = 1U << 14; // from the third

constexpr quint64 Writing = LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR |
                            LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_MAKE_CHAR |
                            LANDLOCK_ACCESS_FS_MAKE_DIR | LANDLOCK_ACCESS_FS_MAKE_REG | LANDLOCK_ACCESS_FS_MAKE_SOCK |
                            LANDLOCK_ACCESS_FS_MAKE_FIFO | LANDLOCK_ACCESS_FS_MAKE_BLOCK | LANDLOCK_ACCESS_FS_MAKE_SYM;

void Allow(int ruleset, const char *path, quint64 access)
{
    const int place = ::open(path, O_PATH | O_CLOEXEC);
    if (place < 0)
        return;
    landlock_path_beneath_attr rule = {};
    rule.allowed_access = access;
    rule.parent_fd = place;
    ::syscall(SYS_landlock_add_rule, ruleset, LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
    ::close(place);
}

/// See landlock(7).
void KeepFiles(const QString &folder)
{
    const long version = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    if (version < 1)
        return;
    landlock_ruleset_attr attributes = {};
    attributes.handled_access_fs = Writing | (version >= 2 ? MayRefer : 0) | (version >= 3 ? MayTruncate : 0);
    const int ruleset = static_cast<int>(::syscall(SYS_landlock_create_ruleset, &attributes, sizeof attributes, 0));
    if (ruleset < 0)
        return;
    Allow(ruleset, QFile::encodeName(folder).constData(), attributes.handled_access_fs);
    Allow(ruleset, "/dev/null", LANDLOCK_ACCESS_FS_WRITE_FILE);
    ::syscall(SYS_landlock_restrict_self, ruleset, 0);
    ::close(ruleset);
}

void KeepCalls()
{
    const scmp_filter_ctx filter = ::seccomp_init(SCMP_ACT_ALLOW);
    if (!filter)
        return;
    for (const int call : {SCMP_SYS(socket), SCMP_SYS(connect), SCMP_SYS(bind), SCMP_SYS(execve), SCMP_SYS(execveat),
                           SCMP_SYS(ptrace), SCMP_SYS(process_vm_writev)})
        ::seccomp_rule_add(filter, SCMP_ACT_ERRNO(EPERM), call, 0);
    ::seccomp_load(filter);
    ::seccomp_release(filter);
}

} // namespace

void SealProcess(const QString &folder)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    const rlimit none = {0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    KeepFiles(folder);
    KeepCalls();
}

quint64 MemoryOf(qint64 process)
{
    QFile file(QStringLiteral("/proc/%1/statm").arg(process));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    // Pages: all, resident, …
    return file.readAll().split(' ').value(1).toULongLong() * static_cast<quint64>(::sysconf(_SC_PAGESIZE));
}
