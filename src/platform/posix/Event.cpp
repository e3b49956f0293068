// SPDX-License-Identifier: MIT
#include "platform/Platform.h"

#include <ctime>
#include <new>

#include <pthread.h>

#include "platform/posix/Lock.h"
#include "platform/posix/MutexGuard.h"

namespace qor::platform
{

namespace
{

#ifdef QORTK_HAS_CONDATTR_SETCLOCK
/// Changes of the wall clock do not affect time limits.
constexpr clockid_t DEADLINE_CLOCK = CLOCK_MONOTONIC;
#else
constexpr clockid_t DEADLINE_CLOCK = CLOCK_REALTIME;
#endif

timespec getDeadline(unsigned int milliseconds)
{
    constexpr unsigned int MILLISECONDS = 1000;
    constexpr long NANOSECONDS = 1000000000;
    constexpr long NANOSECONDS_PER_MILLISECOND = 1000000;
    timespec deadline = {};
    clock_gettime(DEADLINE_CLOCK, &deadline);
    deadline.tv_sec += static_cast<std::time_t>(milliseconds / MILLISECONDS);
    deadline.tv_nsec +=
        static_cast<long>(milliseconds % MILLISECONDS) * NANOSECONDS_PER_MILLISECOND;
    if (deadline.tv_nsec >= NANOSECONDS) {
        deadline.tv_nsec -= NANOSECONDS;
        ++deadline.tv_sec;
    }
    return deadline;
}

/// A condition variable of the process-wide pool, which never destroys one: `set` signals it after
/// unlocking the event's mutex, when the released thread may have left already. If another waiter
/// uses it by then, that waiter sees its own flag unchanged and continues to wait.
struct TCondition {
    pthread_cond_t condition;
    TCondition* next = nullptr;
};

TCondition* unusedConditions = nullptr; ///< guarded by ProcessGuard

void initialize(pthread_cond_t& condition)
{
    pthread_condattr_t attributes;
    pthread_condattr_init(&attributes);
#ifdef QORTK_HAS_CONDATTR_SETCLOCK
    pthread_condattr_setclock(&attributes, DEADLINE_CLOCK);
#endif
    pthread_cond_init(&condition, &attributes);
    pthread_condattr_destroy(&attributes);
}

/// @return null if there is no memory for a condition variable
TCondition* takeCondition()
{
    {
        const ProcessGuard guard;
        if (TCondition* const unused = unusedConditions) {
            unusedConditions = unused->next;
            return unused;
        }
    }
    auto* const created = new (std::nothrow) TCondition;
    if (created) {
        initialize(created->condition);
    }
    return created;
}

void returnCondition(TCondition* condition)
{
    const ProcessGuard guard;
    condition->next = unusedConditions;
    unusedConditions = condition;
}

/// A waiting thread.
struct TWaiter {
    TCondition* pooled = nullptr;        ///< null if there was no memory for it
    pthread_cond_t* condition = nullptr; ///< of the pool, or of the thread's stack
    bool isReleased = false;
    TWaiter* previous = nullptr;
    TWaiter* next = nullptr;
};

} // namespace

/// A flag and a FIFO queue of waiting threads, both guarded by the mutex. The flag is false while
/// the queue is not empty. Each waiter has its own flag and condition variable, so a thread that
/// comes later cannot take its release, and spurious wake-ups have no effect.
struct TEvent {
    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    bool isSet = false;
    TWaiter* first = nullptr;
    TWaiter* last = nullptr;

    void append(TWaiter& waiter);
    void remove(TWaiter& waiter);
    void wait(TWaiter& waiter, unsigned int timeLimit);
    void enqueueAndWait(unsigned int timeLimit);
};

void TEvent::append(TWaiter& waiter)
{
    waiter.previous = last;
    (last ? last->next : first) = &waiter;
    last = &waiter;
}

void TEvent::remove(TWaiter& waiter)
{
    (waiter.previous ? waiter.previous->next : first) = waiter.next;
    (waiter.next ? waiter.next->previous : last) = waiter.previous;
}

/// Waits in the queue until the thread is released or the time limit has passed. The mutex is
/// unlocked while the thread waits.
void TEvent::wait(TWaiter& waiter, unsigned int timeLimit)
{
    append(waiter);
    if (timeLimit == NO_TIME_LIMIT) {
        while (!waiter.isReleased) {
            pthread_cond_wait(waiter.condition, &mutex);
        }
        return;
    }
    const timespec deadline = getDeadline(timeLimit);
    int error = 0;
    while (!waiter.isReleased && error == 0) {
        error = pthread_cond_timedwait(waiter.condition, &mutex, &deadline);
    }
    if (!waiter.isReleased) {
        remove(waiter);
    }
}

void TEvent::enqueueAndWait(unsigned int timeLimit)
{
    TWaiter waiter;
    waiter.pooled = takeCondition();
    if (waiter.pooled) {
        waiter.condition = &waiter.pooled->condition;
        wait(waiter, timeLimit);
        returnCondition(waiter.pooled);
        return;
    }
    pthread_cond_t condition;
    initialize(condition);
    waiter.condition = &condition;
    wait(waiter, timeLimit);
    pthread_cond_destroy(&condition);
}

TEvent* createEvent()
{
    return new TEvent;
}

void destroyEvent(TEvent* event)
{
    pthread_mutex_destroy(&event->mutex);
    delete event;
}

void set(TEvent& event)
{
    pthread_cond_t* condition = nullptr;
    {
        const MutexGuard guard(event.mutex);
        TWaiter* const waiter = event.first;
        if (!waiter) {
            event.isSet = true;
            return;
        }
        event.remove(*waiter);
        waiter->isReleased = true;
        if (!waiter->pooled) {
            pthread_cond_signal(waiter->condition);
            return;
        }
        condition = waiter->condition;
    }
    // The event may be destroyed by now. A thread woken here does not find its mutex locked.
    pthread_cond_signal(condition);
}

void waitForEvent(TEvent& event, TLock& lock, unsigned int timeLimit)
{
    {
        // The mutex is held until the thread is in the queue: a thread that takes the lock next and
        // signals releases it.
        const MutexGuard guard(event.mutex);
        release(lock);
        if (event.isSet) {
            event.isSet = false;
        } else {
            event.enqueueAndWait(timeLimit);
        }
    }
    acquire(lock);
}

} // namespace qor::platform
