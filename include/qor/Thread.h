// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "qor/Export.h"
#include "qor/Task.h"

namespace qor
{

namespace platform
{
struct TThread;
}

/// Runs a task on a new thread.
///
/// An object is either idle or started. A new object is idle. A successful `start` makes it
/// started, and `wait` makes it idle again. An object whose task has ended remains started until
/// `wait`.
///
/// The destructor neither waits for the thread nor stops it: the thread continues until its task
/// ends. A copy refers to the same thread and task as its source, and is in the same state. It can
/// wait for that thread, too. A later `start` or `wait` on one object does not change the others.
///
/// **Ownership**: the caller owns the task. The thread does not use the Thread object, which may be
/// destroyed, copied or assigned while the task runs.
///
/// **Error handling**: `start` returns false on failure. No operation throws, but threadFunction()
/// passes on exceptions of the task.
///
/// **Thread safety**: one thread at a time may use an object. Any thread may call the static
/// functions.
///
/// @code
/// struct TSum : qor::Task {
///     void run() override { sum = 1 + 2 + 3; }
///     int sum = 0;
/// };
///
/// TSum task;
/// qor::Thread thread;
/// if (thread.start(&task)) {
///     thread.wait(); // task.sum is 6 then.
/// }
/// @endcode
class QORTK_API Thread
{
public:
    /// Creates an idle object.
    Thread();

    /// Refers to the same thread as another object.
    /// @param other the object to copy
    Thread(const Thread& other);

    /// Refers to the same thread as another object.
    /// @param other the object to copy
    /// @return this object
    Thread& operator=(const Thread& other);

    /// Leaves a running thread running.
    virtual ~Thread();

    /// Starts a thread that runs a task and ends.
    /// @param task the task, which must exist until its `run` has returned. Null starts a thread
    ///             that ends at once.
    /// @return true on success. False if the object is started already; then nothing changes. False
    ///         also if there is not enough memory or the system refuses a thread; then the object
    ///         is idle and only has the task for threadFunction().
    [[nodiscard]] bool start(Task* task);

    /// Waits, without a time limit, until the thread has ended. Then the object is idle and has no
    /// task. Has no effect if the object is idle or the thread itself calls it.
    void wait();

    /// Runs the object's task on the calling thread, without a new thread. Has no effect if the
    /// object has no task.
    void threadFunction();

    /// Gives up the rest of the calling thread's time slice.
    static void yield();

    /// Suspends the calling thread. Signal handlers do not shorten the time.
    /// @param milliseconds the time; 0 is the same as `yield`
    static void sleep(unsigned int milliseconds);

    /// Returns the time since the system started. Changes of the wall clock do not affect it.
    ///
    /// The result overflows after 49.7 days. The unsigned difference of two results is correct
    /// nevertheless.
    /// @return milliseconds modulo 2 to the power of 32. The time during which the system was
    ///         suspended is included if the system counts it.
    static unsigned int timer();

private:
    std::shared_ptr<platform::TThread> m_Handle; ///< null while the object is idle
    bool m_Started;
    Task* m_Task; ///< not owned
};

} // namespace qor
