#include <atomic>

#include <pthread.h>

#include "platform/Platform.h"
#include "platform/posix/Lock.h"
#include "platform/posix/MutexGuard.h"

namespace qor::platform
{

namespace
{

enum class LockState { FREE, HELD, AWAITED };

/// Its address is one that no other living thread has. One byte fits into the storage that is set
/// aside for libraries which are loaded late, so it is found without a call.
__attribute__((tls_model("initial-exec"))) thread_local char threadMark;

} // namespace

/// While nobody waits, one exchange takes the lock and one gives it back. Threads that have to wait
/// do so at the condition variable, and the state is AWAITED for as long as there is one.
struct TLock {
    std::atomic<LockState> state = LockState::FREE;
    unsigned int levels = 0;                  ///< how often the owner holds it, beyond once
    std::atomic<const void*> owner = nullptr; ///< the mark of the thread that holds it
    unsigned int waiterCount = 0;             ///< guarded by the mutex
    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    pthread_cond_t freed = PTHREAD_COND_INITIALIZER;

    bool change(LockState from, LockState to, std::memory_order order)
    {
        return state.compare_exchange_strong(from, to, order, std::memory_order_relaxed);
    }

    void await();
    void hand();
    void own() { owner.store(&threadMark, std::memory_order_relaxed); }
};

/// Takes the lock once it is free. Kept out of `acquire`, which needs no registers saved without
/// it.
__attribute__((noinline)) void TLock::await()
{
    const MutexGuard guard(mutex);
    ++waiterCount;
    while (state.exchange(LockState::AWAITED, std::memory_order_acquire) != LockState::FREE) {
        pthread_cond_wait(&freed, &mutex);
    }
    --waiterCount;
    if (waiterCount == 0) {
        state.store(LockState::HELD, std::memory_order_relaxed);
    }
    own();
}

/// Frees the lock and wakes a thread. The lock cannot be destroyed meanwhile: that thread waits for
/// it, and gets no further than to the mutex.
void TLock::hand()
{
    const MutexGuard guard(mutex);
    state.store(LockState::FREE, std::memory_order_release);
    pthread_cond_signal(&freed);
}

TLock* createLock()
{
    return new TLock;
}

void destroyLock(TLock* lock)
{
    pthread_cond_destroy(&lock->freed);
    pthread_mutex_destroy(&lock->mutex);
    delete lock;
}

void acquire(TLock& lock)
{
    // Only this thread ever stores its own mark, so what it reads of it is always up to date.
    if (lock.owner.load(std::memory_order_relaxed) == &threadMark) {
        ++lock.levels;
        return;
    }
    if (!lock.change(LockState::FREE, LockState::HELD, std::memory_order_acquire)) {
        lock.await();
        return;
    }
    lock.own();
}

void release(TLock& lock)
{
    if (lock.owner.load(std::memory_order_relaxed) != &threadMark) {
        return;
    }
    if (lock.levels > 0) {
        --lock.levels;
        return;
    }
    lock.owner.store(nullptr, std::memory_order_relaxed);
    if (!lock.change(LockState::HELD, LockState::FREE, std::memory_order_release)) {
        lock.hand();
    }
}

void offer(TLock& lock)
{
    if (lock.levels == 0 && lock.state.load(std::memory_order_relaxed) == LockState::AWAITED) {
        release(lock);
        acquire(lock);
    }
}

} // namespace qor::platform
