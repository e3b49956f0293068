// SPDX-License-Identifier: MIT
#include "qor/Thread.h"

#include <csignal>
#include <cstdint>
#include <ctime>
#include <memory>

#include <gtest/gtest.h>

#include "Concurrency.h"
#include "qor/Condition.h"
#include "qor/Mutex.h"

using qor::Condition;
using qor::Mutex;
using qor::Thread;

/// One test unlocks a lock that it does not hold, which ThreadSanitizer reports by default.
extern "C" const char* __tsan_default_options()
{
    return "report_mutex_bugs=0";
}

namespace
{

/// Time in which a thread that is not blocked would certainly have continued.
constexpr unsigned int GRACE_MS = 30;

/// Resolution of the system's timer in milliseconds; 16 on Windows, 1 or better elsewhere.
constexpr unsigned int TICK_MS = 16;

/// @return whether a thread ends within the grace time
bool hasEnded(const std::future<void>& thread)
{
    return thread.wait_for(std::chrono::milliseconds(GRACE_MS)) == std::future_status::ready;
}

/// Threads that wait for an event, and how many of them are released.
class Waiters
{
public:
    /// Adds a waiting thread. @return whether it is waiting
    bool add(unsigned int timeOut = 0)
    {
        const int number = static_cast<int>(m_Threads.size());
        m_Threads.push_back(onThread([this, number, timeOut] {
            mutex.lock();
            ++m_Waiting;
            condition.wait(mutex, timeOut);
            lastReleased = number;
            ++released;
            mutex.unlock();
        }));
        // A thread counts as waiting once another one can take the lock.
        return waitUntil([this, number] {
            mutex.lock();
            const bool isWaiting = m_Waiting > number;
            mutex.unlock();
            return isWaiting;
        });
    }

    bool areReleased(int count)
    {
        return waitUntil([this, count] { return released == count; });
    }

    Mutex mutex;
    Condition condition;
    std::atomic<int> released = 0;
    std::atomic<int> lastReleased = -1; ///< counted from 0

private:
    int m_Waiting = 0;
    std::vector<std::future<void>> m_Threads;
};

TEST(MutexTest, LocksRecursivelyThroughAnyCopy)
{
    auto first = std::make_unique<Mutex>();
    Mutex mutex(*first), second;
    second = *first;
    first.reset();
    mutex.unlock();
    mutex.lock();
    Mutex(second).lock();
    const std::future<void> other = onThread([&] {
        second.unlock(); // Not its own.
        second.lock();
        second.unlock();
    });
    EXPECT_FALSE(hasEnded(other));
    second.unlock();
    EXPECT_FALSE(hasEnded(other));
    mutex.unlock();
}

TEST(ConditionTest, LatchesOneSignalForNextWait)
{
    Waiters waiters;
    waiters.condition.signal();
    Condition assigned;
    assigned = waiters.condition;
    Condition(assigned).signal();
    waiters.mutex.lock();
    waiters.condition.wait(waiters.mutex, 0);
    waiters.mutex.unlock();
    ASSERT_TRUE(waiters.add());
    Thread::sleep(GRACE_MS);
    EXPECT_EQ(waiters.released, 0);
    assigned.signal();
    EXPECT_TRUE(waiters.areReleased(1));
}

TEST(ConditionTest, SignalReleasesLongestWaitingThread)
{
    for (int round = 0; round < 200; ++round) {
        Waiters waiters;
        for (int i = 0; i < 3; ++i) {
            ASSERT_TRUE(waiters.add());
        }
        // Two signals release two threads, even if the second precedes the first wake-up.
        waiters.condition.signal();
        waiters.condition.signal();
        ASSERT_TRUE(waiters.add());
        ASSERT_TRUE(waiters.areReleased(2));
        for (const int next : {2, 3}) {
            waiters.condition.signal();
            ASSERT_TRUE(waiters.areReleased(next + 1));
            EXPECT_EQ(waiters.lastReleased, next) << "the one that has waited longest";
        }
    }
}

TEST(ConditionTest, ReacquiresMutexAfterTimeOut)
{
    Waiters waiters;
    ASSERT_TRUE(waiters.add(60000));
    waiters.mutex.lock();
    constexpr unsigned int TIME = 999; // Almost always into the next second.
    const unsigned int begin = Thread::timer();
    waiters.condition.wait(waiters.mutex, TIME);
    EXPECT_GE(Thread::timer() - begin, TIME - TICK_MS);
    // The thread whose time is up has left the queue.
    waiters.condition.signal();
    Thread::sleep(GRACE_MS);
    EXPECT_EQ(waiters.released, 0) << "not before it holds the lock";
    const std::future<void> other = onThread([&] {
        waiters.mutex.lock();
        waiters.mutex.unlock();
    });
    EXPECT_FALSE(hasEnded(other));
    waiters.mutex.unlock();
    EXPECT_TRUE(waiters.areReleased(1));
    waiters.condition.signal();
    ASSERT_TRUE(waiters.add());
    EXPECT_TRUE(waiters.areReleased(2)) << "by the latched signal";
}

TEST(ConditionTest, MayBeDestroyedAsSoonAsWaitReturns)
{
    for (int round = 0; round < 2000; ++round) {
        Mutex mutex;
        auto condition = std::make_unique<Condition>();
        mutex.lock();
        const std::future<void> signaler = onThread([&, event = condition.get()] {
            mutex.lock(); // Free once the other thread waits.
            mutex.unlock();
            event->signal();
        });
        condition->wait(mutex, round % 2 == 0 ? 0 : 60000);
        condition.reset();
        mutex.unlock();
    }
}

TEST(ConditionTest, NoLostOrSpuriousWakeups)
{
    constexpr int ROUNDS = 50000;
    constexpr int THREADS = 4;
    Mutex mutex;
    Condition condition;
    int items = 0, taken = 0, wakeUps = 0;
    bool isEnding = false;
    std::vector<std::future<void>> consumers, producers;
    for (int i = 0; i < THREADS; ++i) {
        consumers.push_back(onThread([&] {
            mutex.lock();
            while (items > 0 || !isEnding) {
                if (items > 0) {
                    --items;
                    ++taken;
                } else {
                    condition.wait(mutex, 0);
                    ++wakeUps;
                }
            }
            mutex.unlock();
            condition.signal();
        }));
        producers.push_back(onThread([&] {
            for (int round = 0; round < ROUNDS; ++round) {
                mutex.lock();
                mutex.lock();
                ++items;
                mutex.unlock();
                mutex.unlock();
                condition.signal();
            }
        }));
    }
    producers.clear();
    mutex.lock();
    isEnding = true;
    mutex.unlock();
    condition.signal();
    consumers.clear();
    EXPECT_EQ(taken, THREADS * ROUNDS);
    EXPECT_LE(wakeUps, THREADS * ROUNDS + THREADS + 1);
}

TEST(ThreadTest, StartFailsUntilWaitReturns)
{
    std::atomic<int> first = 0, second = 0;
    TTask one([&] { ++first; });
    std::atomic<bool> isStarted = false;
    Thread thread;
    TTask two([&] {
        waitUntil([&] { return isStarted.load(); });
        thread.wait();
        ++second;
    });
    thread.wait();
    thread.threadFunction();
    ASSERT_TRUE(thread.start(&one));
    ASSERT_TRUE(waitUntil([&] { return first == 1; }));
    EXPECT_FALSE(thread.start(&two));
    thread.threadFunction();
    EXPECT_EQ(first, 2) << "the first task is kept";
    thread.wait();
    thread.threadFunction();
    ASSERT_TRUE(thread.start(&two));
    isStarted = true;
    ASSERT_TRUE(waitUntil([&] { return second == 1; })) << "it does not wait for itself";
    EXPECT_FALSE(thread.start(&one));
    thread.wait();
    EXPECT_EQ(first, 2);
    ASSERT_TRUE(thread.start(nullptr));
    thread.wait();
}

TEST(ThreadTest, OutlivesItsObjectAndSharesStateWithCopies)
{
    std::atomic<bool> mayEnd = false, isThrough = false;
    TTask task([&] {
        waitUntil([&] { return mayEnd.load(); });
        isThrough = true;
    });
    auto thread = std::make_unique<Thread>();
    ASSERT_TRUE(thread->start(&task));
    Thread copy = *thread, second;
    second = copy;
    thread = std::make_unique<Thread>();
    EXPECT_FALSE(copy.start(&task));
    std::future<void> waiting = onThread([&] { Thread(second).wait(); });
    std::future<void> alsoWaiting = onThread([&] { copy.wait(); });
    EXPECT_FALSE(hasEnded(waiting) || hasEnded(alsoWaiting));
    mayEnd = true;
    waiting.wait();
    EXPECT_TRUE(isThrough);
    alsoWaiting.wait();
    for (Thread other : {second, Thread(second)}) {
        isThrough = false;
        other.threadFunction();
        EXPECT_TRUE(isThrough) << "a copy has the task";
    }
    second.wait();
    mayEnd = isThrough = false;
    ASSERT_TRUE(thread->start(&task));
    thread.reset();
    EXPECT_FALSE(isThrough);
    mayEnd = true;
    EXPECT_TRUE(waitUntil([&] { return isThrough.load(); }));
}

TEST(ThreadTest, TimerAdvancesWithSleep)
{
    const unsigned int begin = Thread::timer();
    Thread::sleep(GRACE_MS);
    Thread::sleep(0);
    EXPECT_GE(Thread::timer() - begin, GRACE_MS - TICK_MS);
}

} // namespace
