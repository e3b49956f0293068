// SPDX-License-Identifier: MIT
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

/// A recursive lock. It has a recursion count: a thread that holds the lock may lock it again, and
/// releases it by calling `unlock` as many times as `lock`. `std::lock_guard<qor::Mutex>` and
/// `std::unique_lock<qor::Mutex>` unlock it at the end of a block.
///
/// Copies refer to the same lock, which is destroyed with the last of them. An assignment makes the
/// target refer to the other lock and drops its reference to the former one.
///
/// **Error handling**: only the constructor can fail, with `std::bad_alloc`.
///
/// **Thread safety**: any thread may call `lock` and `unlock`. Copying, assigning and destroying an
/// object require that no other thread uses that object.
///
/// @warning The behavior is undefined if a thread ends while it holds a lock, or if a lock is
/// destroyed while a thread holds it.
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
    /// @throws std::bad_alloc if there is not enough memory
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

    /// Acquires the lock, or increments its recursion count if the calling thread holds it already.
    /// Waits without a time limit while another thread holds it.
    void lock();

    /// Decrements the recursion count, and releases the lock when the count becomes 0. Has no
    /// effect if the calling thread does not hold the lock.
    void unlock();

private:
    friend class Condition;
    friend class Log;

    std::shared_ptr<platform::TLock> m_Handle;
};

} // namespace qor
