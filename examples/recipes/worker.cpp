// SPDX-License-Identifier: MIT
// Runs work on a thread, shows its progress, and cancels it.
#include <iostream>

#include <qor/Condition.h>
#include <qor/Mutex.h>
#include <qor/Task.h>
#include <qor/Thread.h>

/// Work in steps. The mutex guards the numbers that both threads use.
class Worker : public qor::Task
{
public:
    explicit Worker(int stepCount) : m_StepCount(stepCount) {}

    void run() override
    {
        for (int step = 1; step <= m_StepCount; ++step) {
            qor::Thread::sleep(1); // the work of one step
            m_Mutex.lock();
            m_FinishedSteps = step;
            const bool isCancelled = m_IsCancelled;
            m_Mutex.unlock();
            m_HasProgressed.signal();
            if (isCancelled) {
                return;
            }
        }
    }

    /// Makes the work end after the current step.
    void cancel()
    {
        m_Mutex.lock();
        m_IsCancelled = true;
        m_Mutex.unlock();
    }

    /// Waits until more steps are finished than before, for 20 ms at most, and returns their
    /// number. A window would use the time to handle its events.
    int waitForProgress(int before)
    {
        constexpr unsigned int TIME_LIMIT = 20;
        m_Mutex.lock();
        if (m_FinishedSteps == before) {
            m_HasProgressed.wait(m_Mutex, TIME_LIMIT);
        }
        const int finished = m_FinishedSteps;
        m_Mutex.unlock();
        return finished;
    }

private:
    const int m_StepCount;
    qor::Mutex m_Mutex;
    qor::Condition m_HasProgressed;
    int m_FinishedSteps = 0;
    bool m_IsCancelled = false;
};

int main()
{
    Worker worker(1000000);
    qor::Thread thread;
    if (!thread.start(&worker)) {
        std::cout << "No thread could be started.\n";
        return 1;
    }
    int finished = 0;
    while (finished < 5) {
        finished = worker.waitForProgress(finished);
    }
    std::cout << "five steps or more\n";
    worker.cancel();
    thread.wait(); // before the worker and the thread go out of scope
    std::cout << "cancelled\n";
}
