#include "qor/Thread.h"

#include "platform/Platform.h"

namespace qor
{

namespace
{

/// The thread gets its task and not the Thread, which its host may destroy any time.
void runTask(void* task)
{
    if (task) {
        static_cast<Task*>(task)->run();
    }
}

} // namespace

Task::Task() = default;

Task::Task(const Task&) = default;

Task& Task::operator=(const Task&) = default;

Task::~Task() = default;

Thread::Thread() : m_Started(false), m_Task(nullptr) {}

Thread::Thread(const Thread& other) = default;

Thread& Thread::operator=(const Thread& other) = default;

Thread::~Thread() = default;

bool Thread::start(Task* task)
{
    if (m_Started) {
        return false;
    }
    m_Task = task;
    platform::TThread* const thread = platform::createThread(runTask, task);
    if (!thread) {
        m_Handle.reset();
        return false;
    }
    m_Handle.reset(thread, platform::destroyThread);
    m_Started = true;
    return true;
}

void Thread::wait()
{
    if (!m_Started) {
        return;
    }
    platform::join(*m_Handle);
    m_Handle.reset();
    m_Started = false;
    m_Task = nullptr;
}

void Thread::threadFunction()
{
    runTask(m_Task);
}

void Thread::yield()
{
    platform::yieldThread();
}

void Thread::sleep(unsigned int milliseconds)
{
    if (milliseconds == 0) {
        platform::yieldThread();
        return;
    }
    platform::sleepThread(milliseconds);
}

unsigned int Thread::timer()
{
    return platform::getTickCount();
}

} // namespace qor
