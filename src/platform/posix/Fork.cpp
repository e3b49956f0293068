#include "platform/Platform.h"
#include "platform/posix/Lock.h"

namespace qor::platform
{

namespace
{

pthread_mutex_t processMutex = PTHREAD_MUTEX_INITIALIZER;
pthread_once_t registration = PTHREAD_ONCE_INIT;
TLock* firstForkSafe = nullptr; ///< guarded by processMutex

extern "C" void beforeFork()
{
    pthread_mutex_lock(&processMutex);
    for (TLock* lock = firstForkSafe; lock; lock = lock->nextForkSafe) {
        acquire(*lock);
    }
}

extern "C" void afterForkInParent()
{
    for (TLock* lock = firstForkSafe; lock; lock = lock->nextForkSafe) {
        release(*lock);
    }
    pthread_mutex_unlock(&processMutex);
}

/// Initializes the locks again instead of releasing them: the system refuses to unlock them,
/// because the id of the child's only thread differs from that of their owner.
extern "C" void afterForkInChild()
{
    for (TLock* lock = firstForkSafe; lock; lock = lock->nextForkSafe) {
        initialize(*lock);
    }
    pthread_mutex_unlock(&processMutex);
}

extern "C" void registerForkHandlers()
{
    pthread_atfork(beforeFork, afterForkInParent, afterForkInChild);
}

} // namespace

ProcessGuard::ProcessGuard()
{
    pthread_once(&registration, registerForkHandlers);
    pthread_mutex_lock(&processMutex);
}

ProcessGuard::~ProcessGuard()
{
    pthread_mutex_unlock(&processMutex);
}

void makeForkSafe(TLock& lock)
{
    const ProcessGuard guard;
    if (!lock.isForkSafe) {
        lock.isForkSafe = true;
        lock.nextForkSafe = firstForkSafe;
        firstForkSafe = &lock;
    }
}

void removeForkSafe(TLock& lock)
{
    if (!lock.isForkSafe) {
        return;
    }
    const ProcessGuard guard;
    TLock** link = &firstForkSafe;
    while (*link != &lock) {
        link = &(*link)->nextForkSafe;
    }
    *link = lock.nextForkSafe;
}

} // namespace qor::platform
