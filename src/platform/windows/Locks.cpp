// SPDX-License-Identifier: MIT
#include <algorithm>
#include <memory>
#include <new>

#include "platform/Platform.h"
#include "platform/windows/SystemHeaders.h"

namespace qor::platform
{

namespace
{

HANDLE requireHandle(HANDLE handle)
{
    if (!handle) {
        throw std::bad_alloc();
    }
    return handle;
}

} // namespace

/// A kernel mutex, because `SignalObjectAndWait` releases only that kind atomically with the wait.
/// It is recursive, and `ReleaseMutex` fails in a thread that does not own it.
struct TLock {
    TLock() : handle(requireHandle(CreateMutexA(nullptr, FALSE, nullptr))) {}
    TLock(const TLock&) = delete;
    TLock& operator=(const TLock&) = delete;
    ~TLock() { CloseHandle(handle); }

    const HANDLE handle;
};

struct TEvent {
    TEvent() : handle(requireHandle(CreateEventA(nullptr, FALSE, FALSE, nullptr))) {}
    TEvent(const TEvent&) = delete;
    TEvent& operator=(const TEvent&) = delete;
    ~TEvent() { CloseHandle(handle); }

    const HANDLE handle;
};

TLock* createLock()
{
    return new TLock;
}

void destroyLock(TLock* lock)
{
    delete lock;
}

void acquire(TLock& lock)
{
    WaitForSingleObject(lock.handle, INFINITE);
}

void release(TLock& lock)
{
    ReleaseMutex(lock.handle);
}

/// The system does not fork processes.
void makeForkSafe(TLock&) {}

TEvent* createEvent()
{
    return new TEvent;
}

void destroyEvent(TEvent* event)
{
    delete event;
}

void set(TEvent& event)
{
    SetEvent(event.handle);
}

void waitForEvent(TEvent& event, TLock& lock, unsigned int timeLimit)
{
    constexpr DWORD MAX_TIME_LIMIT = INFINITE - 1;
    const DWORD limit =
        timeLimit == NO_TIME_LIMIT ? INFINITE : std::min<DWORD>(timeLimit, MAX_TIME_LIMIT);
    if (SignalObjectAndWait(lock.handle, event.handle, limit, FALSE) == WAIT_FAILED) {
        // The thread does not own the lock.
        WaitForSingleObject(event.handle, limit);
    }
    acquire(lock);
}

} // namespace qor::platform
