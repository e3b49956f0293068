#include <benchmark/benchmark.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "qor/Condition.h"
#include "qor/Mutex.h"

// Locks and events beside those of the standard library. A flag with a condition variable is what
// hosts write where they need an event.

namespace
{

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

/// A second thread that sleeps: where there is only one, the standard's locks take a short cut.
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
        for (ping.wait(); !isEnding; ping.wait()) {
            pong.signal();
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
BENCHMARK(pingPong<OwnEvent>)->Name("event/ping-pong/qortk")->UseRealTime();
BENCHMARK(pingPong<StandardEvent>)->Name("event/ping-pong/std::condition_variable")->UseRealTime();

} // namespace

BENCHMARK_MAIN();
