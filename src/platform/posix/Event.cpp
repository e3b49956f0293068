#include <atomic>
#include <cerrno>
#include <ctime>

#include <pthread.h>
#include <semaphore.h>

#include "platform/Platform.h"
#include "platform/posix/Lock.h"
#include "platform/posix/MutexGuard.h"

namespace qor::platform
{

namespace
{

enum class EventState { CLEAR, SET, AWAITED };

#ifdef QORTK_HAS_SEM_CLOCKWAIT
/// Time limits do not follow the wall clock when someone sets it.
constexpr clockid_t LIMIT_CLOCK = CLOCK_MONOTONIC;

int waitUntil(sem_t& semaphore, const timespec& deadline)
{
    return sem_clockwait(&semaphore, LIMIT_CLOCK, &deadline);
}
#else
constexpr clockid_t LIMIT_CLOCK = CLOCK_REALTIME;

int waitUntil(sem_t& semaphore, const timespec& deadline)
{
    return sem_timedwait(&semaphore, &deadline);
}
#endif

/// A thread that waits. It stands in the queue until it is released or gives up; having a semaphore
/// of its own, it can neither lose its release to another thread nor take another's.
struct TWaiter {
    TWaiter() { sem_init(&wake, 0, 0); }
    TWaiter(const TWaiter&) = delete;
    TWaiter& operator=(const TWaiter&) = delete;
    ~TWaiter() { sem_destroy(&wake); }

    void sleep()
    {
        while (sem_wait(&wake) != 0) {
        }
    }

    /// @return false if the time was up first
    bool sleepUntil(const timespec& deadline)
    {
        while (waitUntil(wake, deadline) != 0) {
            if (errno != EINTR) {
                return false;
            }
        }
        // The semaphore orders the threads already; this shows it to race detectors, which do not
        // know each of the system's timed waits.
        return isReleased.load(std::memory_order_acquire);
    }

    sem_t wake;
    std::atomic<bool> isReleased = false; ///< the semaphore is posted, or about to be
    TWaiter* previous = nullptr;
    TWaiter* next = nullptr;
};

timespec getDeadline(unsigned int milliseconds)
{
    constexpr unsigned int MILLISECONDS = 1000;
    constexpr long NANOSECONDS = 1000000000;
    constexpr long NANOSECONDS_PER_MILLISECOND = 1000000;
    timespec deadline = {};
    clock_gettime(LIMIT_CLOCK, &deadline);
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
    bool await(TLock& lock, unsigned int timeLimit);
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

/// Appends a waiter to the queue; the mutex is held.
/// @return false if the event was set meanwhile; it is reset then, and there is nothing to wait for
bool TEvent::enqueue(TWaiter& waiter)
{
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

/// Lets go of the lock and waits until it is released or its time is up.
/// @return false if the event was set by now; it is reset then, and the lock still held
bool TEvent::await(TLock& lock, unsigned int timeLimit)
{
    TWaiter waiter;
    {
        const MutexGuard guard(mutex);
        if (!enqueue(waiter)) {
            return false;
        }
    }
    release(lock);
    if (timeLimit == NO_TIME_LIMIT) {
        waiter.sleep();
        return true;
    }
    if (waiter.sleepUntil(getDeadline(timeLimit))) {
        return true;
    }
    {
        const MutexGuard guard(mutex);
        if (!waiter.isReleased) {
            remove(waiter);
            return true;
        }
    }
    // Released at the last moment, by a thread that still needs the semaphore.
    waiter.sleep();
    return true;
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
    TWaiter* waiter = nullptr;
    {
        const MutexGuard guard(event.mutex);
        waiter = event.first;
        if (!waiter) {
            // The last one gave up on the way here.
            event.trySet();
            return;
        }
        event.remove(*waiter);
        waiter->isReleased.store(true, std::memory_order_release);
    }
    // Not under the mutex, which the thread would have to wait for as soon as it wakes. From here
    // on the event may be destroyed.
    sem_post(&waiter->wake);
}

void waitForEvent(TEvent& event, TLock& lock, unsigned int timeLimit)
{
    if (event.tryReset() || !event.await(lock, timeLimit)) {
        offer(lock);
        return;
    }
    acquire(lock);
}

} // namespace qor::platform
