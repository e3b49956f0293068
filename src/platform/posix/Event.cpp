#include <atomic>
#include <ctime>

#include <pthread.h>

#include "platform/Platform.h"
#include "platform/posix/Lock.h"
#include "platform/posix/MutexGuard.h"

namespace qor::platform
{

namespace
{

enum class EventState { CLEAR, SET, AWAITED };

/// A thread that waits. It stands in the queue until it is released or gives up; having a flag of
/// its own, it can neither lose its release to another thread nor take another's.
struct TWaiter {
    TWaiter()
    {
        pthread_condattr_t attributes;
        pthread_condattr_init(&attributes);
        // Time limits do not follow the wall clock when someone sets it.
        pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
        pthread_cond_init(&wake, &attributes);
        pthread_condattr_destroy(&attributes);
    }

    TWaiter(const TWaiter&) = delete;
    TWaiter& operator=(const TWaiter&) = delete;
    ~TWaiter() { pthread_cond_destroy(&wake); }

    /// Looks for the release for about as long as it would take to fall asleep and be woken.
    void watch() const
    {
        constexpr int LOOKS = 2000;
        for (int i = 0; i < LOOKS && !isReleased.load(std::memory_order_relaxed); ++i) {
        }
    }

    pthread_cond_t wake;
    std::atomic<bool> isReleased = false;
    TWaiter* previous = nullptr;
    TWaiter* next = nullptr;
};

timespec getDeadline(unsigned int milliseconds)
{
    constexpr unsigned int MILLISECONDS = 1000;
    constexpr long NANOSECONDS = 1000000000;
    constexpr long NANOSECONDS_PER_MILLISECOND = 1000000;
    timespec deadline = {};
    clock_gettime(CLOCK_MONOTONIC, &deadline);
    deadline.tv_sec += static_cast<std::time_t>(milliseconds / MILLISECONDS);
    deadline.tv_nsec +=
        static_cast<long>(milliseconds % MILLISECONDS) * NANOSECONDS_PER_MILLISECOND;
    if (deadline.tv_nsec >= NANOSECONDS) {
        deadline.tv_nsec -= NANOSECONDS;
        ++deadline.tv_sec;
    }
    return deadline;
}

} // namespace

/// The state is AWAITED for as long as threads stand in the queue, and then changes under the mutex
/// only. Between CLEAR and SET it changes without it.
struct TEvent {
    std::atomic<EventState> state = EventState::CLEAR;
    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    TWaiter* first = nullptr;
    TWaiter* last = nullptr;

    bool trySet();
    bool tryReset();
    bool enqueue(TWaiter& waiter);
    void remove(TWaiter& waiter);
    void await(TWaiter& waiter, unsigned int timeLimit);
};

/// @return false if threads are waiting
bool TEvent::trySet()
{
    EventState found = EventState::CLEAR;
    // Exchanged even if it is set already: who resets it is to see what came before this call.
    while (!state.compare_exchange_weak(found, EventState::SET, std::memory_order_acq_rel)) {
        if (found == EventState::AWAITED) {
            return false;
        }
    }
    return true;
}

/// @return false if the event was not set
bool TEvent::tryReset()
{
    EventState found = EventState::SET;
    return state.compare_exchange_strong(found, EventState::CLEAR, std::memory_order_acq_rel);
}

/// Appends a waiter to the queue.
/// @return false if the event was set meanwhile; it is reset then, and there is nothing to wait for
bool TEvent::enqueue(TWaiter& waiter)
{
    const MutexGuard guard(mutex);
    EventState found = EventState::CLEAR;
    while (!first && !state.compare_exchange_strong(found, EventState::AWAITED)) {
        // Set by now, unless another thread was quicker to take that.
        if (tryReset()) {
            return false;
        }
        found = EventState::CLEAR;
    }
    waiter.previous = last;
    (last ? last->next : first) = &waiter;
    last = &waiter;
    return true;
}

/// Takes a waiter out of the queue; the mutex is held.
void TEvent::remove(TWaiter& waiter)
{
    (waiter.previous ? waiter.previous->next : first) = waiter.next;
    (waiter.next ? waiter.next->previous : last) = waiter.previous;
    if (!first) {
        state.store(EventState::CLEAR);
    }
}

/// Waits until the waiter is released or its time is up. Either way it has left the queue then, and
/// whoever released it is done with it.
void TEvent::await(TWaiter& waiter, unsigned int timeLimit)
{
    const MutexGuard guard(mutex);
    if (timeLimit == NO_TIME_LIMIT) {
        while (!waiter.isReleased) {
            pthread_cond_wait(&waiter.wake, &mutex);
        }
        return;
    }
    const timespec deadline = getDeadline(timeLimit);
    int error = 0;
    while (!waiter.isReleased && error == 0) {
        error = pthread_cond_timedwait(&waiter.wake, &mutex, &deadline);
    }
    if (!waiter.isReleased) {
        remove(waiter);
    }
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
    if (event.trySet()) {
        return;
    }
    const MutexGuard guard(event.mutex);
    TWaiter* const waiter = event.first;
    if (!waiter) {
        // The last one gave up on the way here.
        event.trySet();
        return;
    }
    event.remove(*waiter);
    waiter->isReleased = true;
    // Still under the mutex: a released waiter ends its condition variable as soon as it can.
    pthread_cond_signal(&waiter->wake);
}

void waitForEvent(TEvent& event, TLock& lock, unsigned int timeLimit)
{
    if (event.tryReset()) {
        offer(lock);
        return;
    }
    TWaiter waiter;
    if (!event.enqueue(waiter)) {
        offer(lock);
        return;
    }
    release(lock);
    waiter.watch();
    event.await(waiter, timeLimit);
    acquire(lock);
}

} // namespace qor::platform
