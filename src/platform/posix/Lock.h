// SPDX-License-Identifier: MIT
#pragma once

#include <pthread.h>

namespace qor::platform
{

/// The system's recursive mutex. If a thread that does not own it unlocks it, the system returns an
/// error, which is ignored.
struct TLock {
    pthread_mutex_t mutex;
    bool isForkSafe = false;
    TLock* nextForkSafeLock = nullptr;
};

/// Initializes a lock's mutex, which no thread holds then. Its former state does not matter.
/// @return false if there is not enough memory
bool initialize(TLock& lock);

/// Removes a lock from the list that `makeForkSafe` builds. Has no effect on other locks.
void unregisterForkSafeLock(TLock& lock);

/// Guards data that all threads of the process share. No thread holds it while the process forks,
/// so the guarded data is consistent in the child process.
class ProcessGuard
{
public:
    ProcessGuard();
    ProcessGuard(const ProcessGuard&) = delete;
    ProcessGuard& operator=(const ProcessGuard&) = delete;
    ~ProcessGuard();
};

} // namespace qor::platform
