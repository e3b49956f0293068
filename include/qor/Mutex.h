#pragma once

#include <memory>

#include "qor/Export.h"

namespace qor
{

class Condition;
class Log;

namespace platform
{
struct TLock;
}

/// A recursive lock: the thread that holds it can lock it again, and it is free once it was
/// unlocked as often.
///
/// A copy is a second name for the same lock, which lives as long as its last name; an assignment
/// lets go of the lock that the target named before. Any thread may lock and unlock; a lock is
/// destroyed when nobody holds it, and a thread gives it back before it ends. Only construction can
/// fail, for lack of memory
/// (`std::bad_alloc`).
///
/// @code
/// qor::Mutex mutex;
/// mutex.lock();
/// // what only one thread at a time may do
/// mutex.unlock();
/// @endcode
class QORTK_API Mutex
{
public:
    /// Makes a lock that nobody holds.
    Mutex();

    /// Names the same lock.
    /// @{
    Mutex(const Mutex& other);
    Mutex& operator=(const Mutex& other);
    /// @}

    virtual ~Mutex();

    /// Waits, without a time limit, until the calling thread holds the lock.
    void lock();

    /// Gives back one level of the lock. Without effect on a thread that does not hold it.
    void unlock();

private:
    friend class Condition;
    friend class Log;

    std::shared_ptr<platform::TLock> m_Handle;
};

} // namespace qor
