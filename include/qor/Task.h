#pragma once

#include "qor/Export.h"

namespace qor
{

/// The work of a thread. Derive from it, implement `run`, and pass an object to Thread::start().
///
/// The caller owns the task and must keep it alive until `run` has returned. `run` must protect the
/// data that it shares with other threads.
///
/// @code
/// struct TSum : qor::Task {
///     void run() override { sum = 1 + 2 + 3; }
///     int sum = 0;
/// };
/// @endcode
class QORTK_API Task
{
public:
    /// Creates a task.
    Task();

    /// Copies nothing, since the base class has no data.
    /// @param other the task to copy
    Task(const Task& other);

    /// Copies nothing, since the base class has no data.
    /// @param other the task to copy
    /// @return this task
    Task& operator=(const Task& other);

    virtual ~Task();

    /// Does the work. It is called on the new thread. An exception that leaves it ends the process.
    virtual void run() = 0;
};

} // namespace qor
