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

/// A recursive lock. The thread that holds it can lock it again; other threads can lock it after as
/// many calls of `unlock` as of `lock`.
///
/// Copies refer to the same lock, which is destroyed with the last of them. An assignment makes the
/// target refer to the other lock and drops its reference to the former one.
///
/// Thread safety: any thread may call `lock` and `unlock`. Copying, assigning and destroying an
/// object require that no other thread uses that object.
///
/// @warning A thread must not end while it holds a lock, and a lock must not be destroyed while a
/// thread holds it: both are undefined.
///
/// @code
/// qor::Mutex mutex;
/// int count = 0;
///
/// mutex.lock();
/// ++count; // Only one thread at a time changes the count.
/// mutex.unlock();
/// @endcode
class QORTK_API Mutex
{
public:
    /// Creates a lock that no thread holds.
    /// @throws std::bad_alloc
    Mutex();

    /// Refers to the same lock as another object.
    /// @param other the object to copy
    Mutex(const Mutex& other);

    /// Refers to the same lock as another object.
    /// @param other the object to copy
    /// @return this object
    Mutex& operator=(const Mutex& other);

    /// Destroys the lock if no other object refers to it.
    virtual ~Mutex();

    /// Waits, without a time limit, until the calling thread holds the lock. Returns at once if it
    /// holds the lock already.
    void lock();

    /// Releases one level of the lock. Has no effect if the calling thread does not hold it.
    void unlock();

private:
    friend class Condition;
    friend class Log;

    std::shared_ptr<platform::TLock> m_Handle;
};

} // namespace qor
