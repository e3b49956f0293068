// SPDX-License-Identifier: MIT
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <new>

#include "platform/Platform.h"
#include "platform/posix/Lock.h"

namespace qor::platform
{

namespace
{

/// A waiting thread. Each one has its own flag and condition variable, so a thread that comes later
/// cannot take its release, and spurious wake-ups have no effect.
struct TWaiter {
    std::condition_variable condition;
    bool isPooled = true; ///< false if it is on the thread's stack
    bool isReleased = false;
    TWaiter* previous = nullptr;
    TWaiter* next = nullptr;
};

/// The unused waiters of the process-wide pool, linked by `next`. Waiters of the pool are never
/// destroyed: `set` notifies the condition variable after unlocking the event's mutex, when the
/// released thread may have left already. If another thread uses the waiter by then, its flag is
/// unchanged and it continues to wait.
///
/// Waiters on the stacks of their threads would need no pool, but `set` would have to notify them
/// before unlocking the mutex. The woken thread would then wait for the mutex: two threads that
/// wake each other in turn would take twice as long.
TWaiter* unusedWaiters = nullptr; ///< guarded by ProcessGuard

/// @return null if there is no memory for a waiter
TWaiter* takeFromPool()
{
    {
        const ProcessGuard guard;
        if (TWaiter* const unused = unusedWaiters) {
            unusedWaiters = unused->next;
            unused->isReleased = false;
            return unused;
        }
    }
    return new (std::nothrow) TWaiter;
}

void returnToPool(TWaiter* waiter)
{
    const ProcessGuard guard;
    waiter->next = unusedWaiters;
    unusedWaiters = waiter;
}

} // namespace

/// A flag and a FIFO queue of waiting threads, both guarded by the mutex. The flag is false while
/// the queue is not empty.
struct TEvent {
    std::mutex mutex;
    bool isSet = false;
    TWaiter* first = nullptr;
    TWaiter* last = nullptr;

    void append(TWaiter& waiter)
    {
        waiter.previous = last;
        waiter.next = nullptr;
        (last ? last->next : first) = &waiter;
        last = &waiter;
    }

    void remove(TWaiter& waiter)
    {
        (waiter.previous ? waiter.previous->next : first) = waiter.next;
        (waiter.next ? waiter.next->previous : last) = waiter.previous;
    }

    /// Waits in the queue until the thread is released or the time limit has passed. The mutex is
    /// unlocked while the thread waits. Changes of the wall clock do not affect the time limit, with
    /// one exception: if the C library has no `pthread_cond_clockwait`, the standard library may
    /// wait longer when the wall clock is set back.
    void wait(std::unique_lock<std::mutex>& guard, TWaiter& waiter, unsigned int timeLimit)
    {
        const auto isReleased = [&waiter] { return waiter.isReleased; };
        append(waiter);
        if (timeLimit == NO_TIME_LIMIT) {
            waiter.condition.wait(guard, isReleased);
        } else if (!waiter.condition.wait_for(guard, std::chrono::milliseconds(timeLimit),
                                              isReleased)) {
            remove(waiter);
        }
    }
};

TEvent* createEvent()
{
    return new TEvent;
}

void destroyEvent(TEvent* event)
{
    delete event;
}

void set(TEvent& event)
{
    TWaiter* waiter = nullptr;
    {
        const std::lock_guard guard(event.mutex);
        waiter = event.first;
        if (!waiter) {
            event.isSet = true;
            return;
        }
        event.remove(*waiter);
        waiter->isReleased = true;
        if (!waiter->isPooled) {
            waiter->condition.notify_one();
            return;
        }
    }
    // The event may be destroyed by now.
    waiter->condition.notify_one();
}

void waitForEvent(TEvent& event, TLock& lock, unsigned int timeLimit)
{
    {
        // The mutex is held until the thread is in the queue: a thread that takes the lock next and
        // signals releases it.
        std::unique_lock guard(event.mutex);
        release(lock);
        if (event.isSet) {
            event.isSet = false;
        } else if (TWaiter* const pooled = takeFromPool()) {
            event.wait(guard, *pooled, timeLimit);
            returnToPool(pooled);
        } else {
            TWaiter onStack;
            onStack.isPooled = false;
            event.wait(guard, onStack, timeLimit);
        }
    }
    acquire(lock);
}

} // namespace qor::platform
