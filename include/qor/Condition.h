#pragma once

#include <memory>

#include "qor/Export.h"
#include "qor/Mutex.h"

namespace qor
{

namespace platform
{
struct TEvent;
}

/// An auto-reset event. It is not a condition variable: a signal that no thread waits for is kept
/// for the next `wait`.
///
/// Copies refer to the same event, which is destroyed with the last of them. An assignment makes
/// the target refer to the other event and drops its reference to the former one.
///
/// Thread safety: any thread may call `wait` and `signal`. Copying and assigning an object require
/// that no other thread uses that object. The object may be destroyed when no thread waits and
/// every `signal` has released its thread, so the thread that a signal released may destroy it at
/// once.
///
/// @code
/// struct TQueue {
///     qor::Mutex mutex;
///     qor::Condition isFilled;
///     int size = 0;
///
///     void put()
///     {
///         mutex.lock();
///         ++size;
///         mutex.unlock();
///         isFilled.signal();
///     }
///
///     void take()
///     {
///         mutex.lock();
///         while (size == 0) {
///             isFilled.wait(mutex, 0);
///         }
///         --size;
///         mutex.unlock();
///     }
/// };
/// @endcode
class QORTK_API Condition
{
public:
    /// Creates an event that is not set.
    /// @throws std::bad_alloc
    Condition();

    /// Refers to the same event as another object.
    /// @param other the object to copy
    Condition(const Condition& other);

    /// Refers to the same event as another object.
    /// @param other the object to copy
    /// @return this object
    Condition& operator=(const Condition& other);

    /// Destroys the event if no other object refers to it.
    virtual ~Condition();

    /// Releases one level of a lock, waits for a signal, and locks it again. The thread counts as
    /// waiting before the lock is released: another thread that takes the lock and calls `signal`
    /// releases it. If the event is set, it is reset and the call does not wait for a signal.
    ///
    /// The caller cannot distinguish a signal from a time-out. Check the awaited state after each
    /// call, in a loop.
    /// @param mutex   lock that the calling thread holds exactly once; a further level would remain
    ///                locked during the wait. The thread holds it again when the call returns.
    /// @param timeOut time limit in milliseconds; 0 waits without a limit. Waiting for the lock at
    ///                the end is not limited.
    void wait(Mutex& mutex, unsigned int timeOut);

    /// Releases exactly one of the threads that are waiting. If no thread is waiting, sets the
    /// event: the next `wait` returns at once. Signals do not add up in that case.
    void signal();

private:
    std::shared_ptr<platform::TEvent> m_Handle;
};

} // namespace qor
