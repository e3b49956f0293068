// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "qor/Condition.h"
#include "qor/Mutex.h"

// Compares locks and events with those of the standard library.

namespace
{

/// A qor::Condition with the mutex that callers of wait() have to lock.
class OwnEvent
{
public:
    void signal() { m_Condition.signal(); }

    void wait()
    {
        m_Mutex.lock();
        m_Condition.wait(m_Mutex, 0);
        m_Mutex.unlock();
    }

private:
    qor::Mutex m_Mutex;
    qor::Condition m_Condition;
};

/// The simplest auto-reset event of the standard library: the caller's mutex also guards the flag.
/// So signal() has to lock that mutex, and the event must not be destroyed before signal() returns.
class StandardEvent
{
public:
    void signal()
    {
        {
            const std::lock_guard guard(m_Mutex);
            m_IsSet = true;
        }
        m_Condition.notify_one();
    }

    void wait()
    {
        std::unique_lock guard(m_Mutex);
        m_Condition.wait(guard, [this] { return m_IsSet; });
        m_IsSet = false;
    }

private:
    std::mutex m_Mutex;
    std::condition_variable m_Condition;
    bool m_IsSet = false;
};

/// An event with the contract of qor::Condition: wait() unlocks the caller's mutex, and signal()
/// does not need that mutex, because another one guards the flag.
class SeparateEvent
{
public:
    void signal()
    {
        {
            const std::lock_guard guard(m_Guard);
            m_IsSet = true;
        }
        m_Condition.notify_one();
    }

    void wait()
    {
        m_Mutex.lock();
        {
            std::unique_lock guard(m_Guard);
            m_Mutex.unlock();
            m_Condition.wait(guard, [this] { return m_IsSet; });
            m_IsSet = false;
        }
        m_Mutex.lock();
        m_Mutex.unlock();
    }

private:
    std::recursive_mutex m_Mutex;
    std::mutex m_Guard;
    std::condition_variable m_Condition;
    bool m_IsSet = false;
};

/// Keeps a second thread asleep. In a process with one thread the standard library skips work.
class SecondThread
{
public:
    SecondThread() : m_Thread([this] { m_End.wait(); }) {}
    ~SecondThread()
    {
        m_End.signal();
        m_Thread.join();
    }

private:
    StandardEvent m_End;
    std::thread m_Thread;
};

template<class TMutex>
void lockOnce(benchmark::State& state)
{
    const SecondThread second;
    TMutex mutex;
    for (auto _ : state) {
        mutex.lock();
        benchmark::ClobberMemory();
        mutex.unlock();
    }
}

template<class TMutex>
void lockNested(benchmark::State& state)
{
    const SecondThread second;
    TMutex mutex;
    mutex.lock();
    for (auto _ : state) {
        mutex.lock();
        benchmark::ClobberMemory();
        mutex.unlock();
    }
    mutex.unlock();
}

template<class TMutex>
void lockContended(benchmark::State& state)
{
    static TMutex mutex;
    for (auto _ : state) {
        mutex.lock();
        benchmark::ClobberMemory();
        mutex.unlock();
    }
}

template<class TEvent>
void latch(benchmark::State& state)
{
    const SecondThread second;
    TEvent event;
    for (auto _ : state) {
        event.signal();
        event.wait();
    }
}

template<class TEvent>
void pingPong(benchmark::State& state)
{
    TEvent ping, pong;
    bool isEnding = false;
    std::thread partner([&] {
        ping.wait();
        while (!isEnding) {
            pong.signal();
            ping.wait();
        }
    });
    for (auto _ : state) {
        ping.signal();
        pong.wait();
    }
    isEnding = true;
    ping.signal();
    partner.join();
}

BENCHMARK(lockOnce<qor::Mutex>)->Name("lock/once/qortk");
BENCHMARK(lockOnce<std::recursive_mutex>)->Name("lock/once/std::recursive_mutex");
BENCHMARK(lockNested<qor::Mutex>)->Name("lock/nested/qortk");
BENCHMARK(lockNested<std::recursive_mutex>)->Name("lock/nested/std::recursive_mutex");
BENCHMARK(lockContended<qor::Mutex>)->Name("lock/2 threads/qortk")->Threads(2)->UseRealTime();
BENCHMARK(lockContended<std::recursive_mutex>)
    ->Name("lock/2 threads/std::recursive_mutex")
    ->Threads(2)
    ->UseRealTime();
BENCHMARK(latch<OwnEvent>)->Name("event/latched/qortk");
BENCHMARK(latch<StandardEvent>)->Name("event/latched/std::condition_variable");
BENCHMARK(latch<SeparateEvent>)->Name("event/latched/beside the caller's lock");
BENCHMARK(pingPong<OwnEvent>)->Name("event/ping-pong/qortk")->UseRealTime();
BENCHMARK(pingPong<StandardEvent>)->Name("event/ping-pong/std::condition_variable")->UseRealTime();
BENCHMARK(pingPong<SeparateEvent>)->Name("event/ping-pong/beside the caller's lock")->UseRealTime();

} // namespace

BENCHMARK_MAIN();
