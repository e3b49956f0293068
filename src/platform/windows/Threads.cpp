// SPDX-License-Identifier: MIT
#include <algorithm>
#include <memory>

#include <process.h>

#include "platform/Platform.h"
#include "platform/windows/SystemHeaders.h"

namespace qor::platform
{

struct TThread {
    TThread() = default;
    TThread(const TThread&) = delete;
    TThread& operator=(const TThread&) = delete;
    ~TThread()
    {
        if (handle) {
            CloseHandle(handle);
        }
    }

    bool isCurrent() const { return GetThreadId(handle) == GetCurrentThreadId(); }
    bool isRunning() const { return WaitForSingleObject(handle, 0) == WAIT_TIMEOUT; }

    HANDLE handle = nullptr;
};

namespace
{

struct TWork {
    void (*work)(void* argument);
    void* argument;
};

unsigned __stdcall runThread(void* argument)
{
    const std::unique_ptr<TWork> work(static_cast<TWork*>(argument));
    work->work(work->argument);
    return 0;
}

} // namespace

TThread* createThread()
{
    return new TThread;
}

bool startThread(TThread& thread, void (*work)(void* argument), void* argument)
{
    auto copy = std::make_unique<TWork>(TWork{work, argument});
    constexpr unsigned DEFAULT_STACK_SIZE = 0;
    constexpr unsigned RUN_AT_ONCE = 0;
    thread.handle = reinterpret_cast<HANDLE>(
        _beginthreadex(nullptr, DEFAULT_STACK_SIZE, runThread, copy.get(), RUN_AT_ONCE, nullptr));
    if (!thread.handle) {
        return false;
    }
    // The new thread owns it.
    static_cast<void>(copy.release());
    return true;
}

bool join(TThread& thread)
{
    if (!thread.handle) {
        return true;
    }
    // The system reuses the identifiers of threads that have ended.
    if (thread.isCurrent() && thread.isRunning()) {
        return false;
    }
    return WaitForSingleObject(thread.handle, INFINITE) == WAIT_OBJECT_0;
}

void destroyThread(TThread* thread)
{
    delete thread;
}

void yieldThread()
{
    Sleep(0);
}

void sleepThread(unsigned int milliseconds)
{
    constexpr DWORD MAX_TIME = INFINITE - 1;
    Sleep(std::min<DWORD>(milliseconds, MAX_TIME));
}

} // namespace qor::platform
