// SPDX-License-Identifier: MIT
#pragma once

#include "qor/Export.h"

namespace qor
{

/// The work of a thread. Derive a class from this one, implement `run`, and pass an object to
/// Thread::start().
///
/// **Ownership**: the caller owns the task. The task must exist until `run` has returned.
///
/// **Error handling**: an exception that leaves `run` terminates the process.
///
/// **Thread safety**: `run` must protect the data that it shares with other threads.
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

    /// Virtual, so a `std::unique_ptr<Task>` may own an object of a derived class.
    virtual ~Task();

    /// Does the work. The new thread calls it once.
    virtual void run() = 0;
};

} // namespace qor
