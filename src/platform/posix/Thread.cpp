// SPDX-License-Identifier: MIT
#include "platform/Platform.h"

#include <atomic>
#include <memory>
#include <mutex>

#include <pthread.h>
#include <sched.h>

namespace qor::platform
{

struct TThread {
    pthread_t thread = {};
    std::atomic<bool> isJoinable = false; ///< started and not joined
    std::mutex mutex;
};

namespace
{

struct TWork {
    void (*function)(void* argument);
    void* argument;
};

extern "C" void* runThread(void* argument)
{
    const std::unique_ptr<TWork> work(static_cast<TWork*>(argument));
    work->function(work->argument);
    return nullptr;
}

} // namespace

TThread* createThread()
{
    return new TThread;
}

bool startThread(TThread& thread, void (*work)(void* argument), void* argument)
{
    auto record = std::make_unique<TWork>(TWork{work, argument});
    thread.isJoinable = pthread_create(&thread.thread, nullptr, runThread, record.get()) == 0;
    if (thread.isJoinable) {
        // The new thread owns the record.
        static_cast<void>(record.release());
    }
    return thread.isJoinable;
}

bool join(TThread& thread)
{
    if (thread.isJoinable && pthread_equal(thread.thread, pthread_self())) {
        return false;
    }
    const std::lock_guard guard(thread.mutex);
    if (thread.isJoinable && pthread_join(thread.thread, nullptr) == 0) {
        thread.isJoinable = false;
    }
    return !thread.isJoinable;
}

void destroyThread(TThread* thread)
{
    if (thread->isJoinable) {
        pthread_detach(thread->thread);
    }
    delete thread;
}

void yieldThread()
{
    sched_yield();
}

} // namespace qor::platform
