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

/// An event that resets itself. It is no condition variable: a signal that nobody waits for is kept
/// for the next `wait`.
///
/// A copy is a second name for the same event, which lives as long as its last name; an assignment
/// lets go of the event that the target named before. Any thread may signal and wait; an event is
/// destroyed when nobody waits. Only construction can fail, for lack of memory (`std::bad_alloc`).
///
/// @code
/// // One thread waits for work ...
/// mutex.lock();
/// while (queue.empty()) {
///     condition.wait(mutex, 0);
/// }
/// // ... that another has put into the queue, under the same lock, before it calls
/// condition.signal();
/// @endcode
class QORTK_API Condition
{
public:
    /// Makes an event that is not set.
    Condition();

    /// Names the same event.
    /// @{
    Condition(const Condition& other);
    Condition& operator=(const Condition& other);
    /// @}

    virtual ~Condition();

    /// Gives back one level of the mutex, waits for a signal, and locks the mutex again. No signal
    /// falls between the first two: who locks the mutex next finds this thread waiting. The caller
    /// holds the mutex, and exactly once, since a second level would stay locked meanwhile.
    ///
    /// A signal and a time-out look alike, so look for what you are waiting for yourself.
    /// @param mutex   the lock that the caller holds; held again at the end, however long that
    /// takes
    /// @param timeOut in milliseconds; 0 waits without a limit
    void wait(Mutex& mutex, unsigned int timeOut);

    /// Releases the one thread among those waiting that has waited longest. If there is none, the
    /// next `wait` returns at once; further signals until then add nothing.
    void signal();

private:
    std::shared_ptr<platform::TEvent> m_Handle;
};

} // namespace qor
