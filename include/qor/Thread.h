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
/// A thread object is idle until `start`, and then started until `wait`, even if the work ends
/// before. `start` and `wait` on one object come from one thread at a time; the static operations
/// from any.
///
/// The destructor neither waits for the thread nor stops it: it runs on until its task is done. A
/// copy refers to the same thread and can wait for it as well, but learns nothing of what happens
/// to its source afterwards.
///
/// @code
/// struct TCount : qor::Task {
///     void run() override { sum = 1 + 2 + 3; }
///     int sum = 0;
/// };
///
/// TCount count;
/// qor::Thread thread;
/// if (thread.start(&count)) {
///     thread.wait();
/// } // count.sum is 6
/// @endcode
class QORTK_API Thread
{
public:
    Thread();

    /// Refers to the same thread.
    /// @{
    Thread(const Thread& other);
    Thread& operator=(const Thread& other);
    /// @}

    virtual ~Thread();

    /// Starts a thread that runs the task and ends.
    /// @param task not owned; has to live until its `run` has returned. Null makes a thread that
    ///             ends at once.
    /// @return false if the object is started already, which changes nothing, or if there is no
    ///         memory or no thread to be had
    bool start(Task* task);

    /// Waits, without a time limit, until the thread has ended. The object is idle then. Without
    /// effect on an idle object, and for a thread that would wait for itself.
    void wait();

    /// Does what the new thread does: runs the task that `start` was given, on the calling thread.
    /// Without effect on an object that has none.
    void threadFunction();

    /// Gives up the rest of the calling thread's time slice.
    static void yield();

    /// Suspends the calling thread for so many milliseconds. 0 is the same as `yield`.
    static void sleep(unsigned int milliseconds);

    /// Tells the milliseconds since the system started, modulo 2 to the power of 32, the time
    /// that it was asleep included. Setting the clock does not change them. The unsigned difference
    /// of two readings is right even where the count began anew in between.
    static unsigned int timer();

private:
    std::shared_ptr<platform::TThread> m_Handle; ///< null if there is none
    bool m_Started;
    Task* m_Task; ///< not owned
};

} // namespace qor
