// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <thread>
#include <utility>
#include <vector>

#include "qor/Thread.h"

/// Task that calls a function.
struct TTask : qor::Task {
    explicit TTask(std::function<void()> actionArgument) : action(std::move(actionArgument)) {}
    void run() override { action(); }
    std::function<void()> action;
};

/// Calls a function on another thread. The destructor of the returned future waits for it.
template<typename TFunction>
auto onThread(TFunction function)
{
    return std::async(std::launch::async, std::move(function));
}

inline void sleepMs(int milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

/// Waits until other threads or processes have made a condition true, for 30 s at most.
/// @return whether it is true
inline bool waitUntil(const std::function<bool()>& condition)
{
    for (int i = 0; i < 30000 && !condition(); ++i) {
        sleepMs(1);
    }
    return condition();
}
