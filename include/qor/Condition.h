// SPDX-License-Identifier: MIT
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
/// **Error handling**: only the constructor can fail, with `std::bad_alloc`.
///
/// **Thread safety**: any thread may call `wait` and `signal`. Copying, assigning and destroying an
/// object require that no other thread uses that object, with one exception: a thread that a signal
/// has released may destroy the object before that call of `signal` returns.
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
    /// @throws std::bad_alloc if there is not enough memory
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

    /// Unlocks a mutex, waits for a signal, and locks the mutex again. Unlocking and the begin of
    /// the wait are atomic: a `signal` that another thread sends while it holds the mutex is not
    /// missed. If the event is set, it is reset and the call does not wait for a signal.
    ///
    /// The caller cannot distinguish a signal from a time-out. Check the awaited state after each
    /// call, in a loop.
    /// @param mutex   mutex that the calling thread has locked exactly once. If it has locked the
    ///                mutex several times, the mutex remains locked during the wait. The thread
    ///                holds the mutex again when the call returns.
    /// @param timeOut time limit of the wait for a signal in milliseconds; 0 sets no limit. The
    ///                time for locking the mutex again is not limited.
    void wait(Mutex& mutex, unsigned int timeOut);

    /// Releases exactly one of the waiting threads. If no thread is waiting, sets the event: the
    /// next `wait` returns at once. Several signals while no thread is waiting release only one
    /// `wait`.
    void signal();

private:
    std::shared_ptr<platform::TEvent> m_Handle;
};

} // namespace qor
