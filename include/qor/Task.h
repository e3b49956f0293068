#pragma once

#include "qor/Export.h"

namespace qor
{

/// The work of a thread. A host derives from it and hands an object to `Thread::start`.
class QORTK_API Task
{
public:
    Task();

    /// A task has nothing of its own to copy.
    /// @{
    Task(const Task& other);
    Task& operator=(const Task& other);
    /// @}

    virtual ~Task();

    /// Does the work, on the new thread. An exception that leaves it ends the process.
    virtual void run() = 0;
};

} // namespace qor
