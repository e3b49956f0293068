// SPDX-License-Identifier: MIT
#include "platform/Platform.h"
#include "platform/posix/Lock.h"

namespace qor::platform
{

namespace
{

pthread_mutex_t processGuardMutex = PTHREAD_MUTEX_INITIALIZER;
pthread_once_t forkHandlersOnce = PTHREAD_ONCE_INIT;
TLock* firstForkSafeLock = nullptr; ///< guarded by processGuardMutex

extern "C" void beforeFork()
{
    pthread_mutex_lock(&processGuardMutex);
    for (TLock* lock = firstForkSafeLock; lock; lock = lock->nextForkSafeLock) {
        acquire(*lock);
    }
}

extern "C" void afterForkInParent()
{
    for (TLock* lock = firstForkSafeLock; lock; lock = lock->nextForkSafeLock) {
        release(*lock);
    }
    pthread_mutex_unlock(&processGuardMutex);
}

/// Initializes the locks again instead of releasing them: the system refuses to unlock them,
/// because the id of the child's only thread differs from that of their owner.
extern "C" void afterForkInChild()
{
    for (TLock* lock = firstForkSafeLock; lock; lock = lock->nextForkSafeLock) {
        initialize(*lock);
    }
    pthread_mutex_unlock(&processGuardMutex);
}

extern "C" void registerForkHandlers()
{
    pthread_atfork(beforeFork, afterForkInParent, afterForkInChild);
}

} // namespace

ProcessGuard::ProcessGuard()
{
    pthread_once(&forkHandlersOnce, registerForkHandlers);
    pthread_mutex_lock(&processGuardMutex);
}

ProcessGuard::~ProcessGuard()
{
    pthread_mutex_unlock(&processGuardMutex);
}

void makeForkSafe(TLock& lock)
{
    const ProcessGuard guard;
    if (!lock.isForkSafe) {
        lock.isForkSafe = true;
        lock.nextForkSafeLock = firstForkSafeLock;
        firstForkSafeLock = &lock;
    }
}

void unregisterForkSafeLock(TLock& lock)
{
    if (!lock.isForkSafe) {
        return;
    }
    const ProcessGuard guard;
    TLock** link = &firstForkSafeLock;
    while (*link != &lock) {
        link = &(*link)->nextForkSafeLock;
    }
    *link = lock.nextForkSafeLock;
}

} // namespace qor::platform
