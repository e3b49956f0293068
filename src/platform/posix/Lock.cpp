// SPDX-License-Identifier: MIT
#include "platform/posix/Lock.h"

#include <memory>
#include <new>

#include "platform/Platform.h"

namespace qor::platform
{

bool initialize(TLock& lock)
{
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    const int error = pthread_mutex_init(&lock.mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
    return error == 0;
}

TLock* createLock()
{
    auto lock = std::make_unique<TLock>();
    if (!initialize(*lock)) {
        throw std::bad_alloc();
    }
    return lock.release();
}

void destroyLock(TLock* lock)
{
    unregisterForkSafeLock(*lock);
    pthread_mutex_destroy(&lock->mutex);
    delete lock;
}

void acquire(TLock& lock)
{
    pthread_mutex_lock(&lock.mutex);
}

void release(TLock& lock)
{
    pthread_mutex_unlock(&lock.mutex);
}

} // namespace qor::platform
