// Processes that have one database open share Firebird's lock table, guarded by mutexes in a mapped file. Debian builds
// Firebird without robust mutexes: a process killed inside such a lock leaves it locked, and every other copy of the
// program, running or started later, waits for ever. Firebird can recover from a dead owner once it gets the lock. So
// the few relevant calls pass through here: Firebird's process-shared mutexes become robust, and a lock inherited from
// a dead process is declared consistent, as Firebird does when built with robust mutexes. Calls of all other modules
// pass unchanged.

#include "stores/engine/FirebirdCallsUnix.h"

#include <cerrno>
#include <ctime>
#include <pthread.h>

namespace {

constinit Real<int(pthread_mutexattr_t *, int)> RealSetShared("pthread_mutexattr_setpshared");
constinit Real<int(pthread_mutex_t *)> RealLock("pthread_mutex_lock");
constinit Real<int(pthread_mutex_t *)> RealTryLock("pthread_mutex_trylock");
constinit Real<int(pthread_cond_t *, pthread_mutex_t *)> RealWait("pthread_cond_wait");
constinit Real<int(pthread_cond_t *, pthread_mutex_t *, const timespec *)> RealTimedWait("pthread_cond_timedwait");

/// Translates a lock's result for its caller: Firebird goes on with a mutex whose owner died.
int Recovered(int result, pthread_mutex_t *mutex, const void *caller)
{
    if (result != EOWNERDEAD || !IsEngine(caller))
        return result;
    return ::pthread_mutex_consistent(mutex);
}

} // namespace

extern "C" {

int pthread_mutexattr_setpshared(pthread_mutexattr_t *attributes, int shared) noexcept
{
    const int result = RealSetShared()(attributes, shared);
    if (result == 0 && shared == PTHREAD_PROCESS_SHARED && IsEngine(__builtin_return_address(0)))
        return ::pthread_mutexattr_setrobust(attributes, PTHREAD_MUTEX_ROBUST);
    return result;
}

int pthread_mutex_lock(pthread_mutex_t *mutex) noexcept
{
    return Recovered(RealLock()(mutex), mutex, __builtin_return_address(0));
}

int pthread_mutex_trylock(pthread_mutex_t *mutex) noexcept
{
    return Recovered(RealTryLock()(mutex), mutex, __builtin_return_address(0));
}

int pthread_cond_wait(pthread_cond_t *condition, pthread_mutex_t *mutex)
{
    return Recovered(RealWait()(condition, mutex), mutex, __builtin_return_address(0));
}

int pthread_cond_timedwait(pthread_cond_t *condition, pthread_mutex_t *mutex, const timespec *until)
{
    return Recovered(RealTimedWait()(condition, mutex, until), mutex, __builtin_return_address(0));
}

} // extern "C"

/// Called by FirebirdClient, so that the linker keeps this file.
void KeepSharedLocks() {}
