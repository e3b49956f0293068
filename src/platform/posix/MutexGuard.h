// SPDX-License-Identifier: MIT
#pragma once

#include <pthread.h>

namespace qor::platform
{

/// Locks a mutex of the system until the end of the scope.
class MutexGuard
{
public:
    explicit MutexGuard(pthread_mutex_t& mutex) : m_Mutex(mutex) { pthread_mutex_lock(&m_Mutex); }
    MutexGuard(const MutexGuard&) = delete;
    MutexGuard& operator=(const MutexGuard&) = delete;
    ~MutexGuard() { pthread_mutex_unlock(&m_Mutex); }

private:
    pthread_mutex_t& m_Mutex;
};

} // namespace qor::platform
