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

/// Runs a task on a thread of its own.
///
/// An object is idle until a successful `start`, and then started until `wait`, even if the task
/// has ended before. The object does not own the task.
///
/// The destructor neither waits for the thread nor stops it: the thread continues until its task
/// ends. Copies refer to the same thread, task and state as the source at that moment. Each of them
/// can wait for the thread; a later `start` or `wait` on one object does not change the others.
///
/// Thread safety: `start` and `wait` on one object must not be called by two threads at once. The
/// static functions may be called by any thread.
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
    /// @param task the task, not owned; it must live until its `run` has returned. Null starts a
    ///             thread that ends at once.
    /// @return false if the object is started already, which changes nothing, or if there is no
    ///         memory or the system refuses a thread; the object keeps the task then, but is idle
    bool start(Task* task);

    /// Waits, without a time limit, until the thread has ended. The object is idle then and has no
    /// task. Has no effect on an idle object and when called by the thread itself.
    void wait();

    /// Runs the object's task on the calling thread. Has no effect without a task.
    void threadFunction();

    /// Gives up the rest of the calling thread's time slice.
    static void yield();

    /// Suspends the calling thread. A signal handler that runs meanwhile does not shorten the time.
    /// @param milliseconds the time; 0 is the same as `yield`
    static void sleep(unsigned int milliseconds);

    /// Returns the time since the system started, which changes of the wall clock do not affect.
    /// Subtract two readings as unsigned numbers: the difference is right also after an overflow.
    /// @return milliseconds modulo 2 to the power of 32, including the time in which the system was
    ///         suspended, where the system counts it
    static unsigned int timer();

private:
    std::shared_ptr<platform::TThread> m_Handle; ///< null while the object is idle
    bool m_Started;
    Task* m_Task; ///< not owned
};

} // namespace qor
