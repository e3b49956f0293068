// SPDX-License-Identifier: MIT
#include "qor/Thread.h"

#include <new>

#include "platform/Platform.h"

namespace qor
{

namespace
{

/// The work of a new thread. It gets the task and not the Thread, because the host may destroy the
/// Thread before the task ends.
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
    try {
        // All memory is allocated before the thread runs.
        m_Handle.reset(platform::createThread(), platform::destroyThread);
        m_Started = platform::startThread(*m_Handle, runTask, task);
    } catch (const std::bad_alloc&) {
        m_Started = false;
    }
    if (!m_Started) {
        m_Handle.reset();
    }
    return m_Started;
}

void Thread::wait()
{
    if (!m_Started) {
        return;
    }
    if (!platform::join(*m_Handle)) {
        return;
    }
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
