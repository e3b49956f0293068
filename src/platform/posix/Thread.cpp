#include <new>

#include <pthread.h>
#include <sched.h>

#include "platform/Platform.h"
#include "platform/posix/MutexGuard.h"

namespace qor::platform
{

struct TThread {
    pthread_t thread;
    bool isJoined = false;
    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
};

namespace
{

struct TWork {
    void (*work)(void* argument);
    void* argument;
};

extern "C" void* runThread(void* argument)
{
    const TWork work = *static_cast<TWork*>(argument);
    delete static_cast<TWork*>(argument);
    work.work(work.argument);
    return nullptr;
}

} // namespace

TThread* createThread(void (*work)(void* argument), void* argument)
{
    TThread* const thread = new (std::nothrow) TThread;
    TWork* const copy = new (std::nothrow) TWork{work, argument};
    if (thread && copy && pthread_create(&thread->thread, nullptr, runThread, copy) == 0) {
        return thread;
    }
    delete copy;
    delete thread;
    return nullptr;
}

void join(TThread& thread)
{
    const MutexGuard guard(thread.mutex);
    if (!thread.isJoined) {
        pthread_join(thread.thread, nullptr);
        thread.isJoined = true;
    }
}

void destroyThread(TThread* thread)
{
    if (!thread->isJoined) {
        pthread_detach(thread->thread);
    }
    pthread_mutex_destroy(&thread->mutex);
    delete thread;
}

void yieldThread()
{
    sched_yield();
}

} // namespace qor::platform
