// SPDX-License-Identifier: MIT
#include "platform/Platform.h"

#include <cerrno>
#include <ctime>

namespace qor::platform
{

namespace
{

#ifdef CLOCK_BOOTTIME
constexpr clockid_t TICK_CLOCK = CLOCK_BOOTTIME;
#else
constexpr clockid_t TICK_CLOCK = CLOCK_MONOTONIC;
#endif

constexpr int MILLISECONDS_PER_SECOND = 1000;
constexpr int NANOSECONDS_PER_MILLISECOND = 1000000;

} // namespace

TWallClock getWallClock()
{
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    return {now.tv_sec, static_cast<int>(now.tv_nsec / NANOSECONDS_PER_MILLISECOND)};
}

TLocalTime getLocalTime(std::int64_t second)
{
    const std::time_t time = static_cast<std::time_t>(second);
    std::tm local = {};
    // POSIX requires tzset() to read a changed time zone, but does not require it of localtime_r().
    tzset();
    localtime_r(&time, &local);
    constexpr int FIRST_YEAR = 1900;
    return {local.tm_year + FIRST_YEAR,
            local.tm_mon + 1,
            local.tm_mday,
            local.tm_hour,
            local.tm_min,
            local.tm_sec};
}

unsigned int getTickCount()
{
    timespec now = {};
    clock_gettime(TICK_CLOCK, &now);
    const std::uint64_t milliseconds =
        static_cast<std::uint64_t>(now.tv_sec) * MILLISECONDS_PER_SECOND +
        static_cast<std::uint64_t>(now.tv_nsec / NANOSECONDS_PER_MILLISECOND);
    return static_cast<unsigned int>(milliseconds);
}

void sleepThread(unsigned int milliseconds)
{
    timespec rest = {static_cast<std::time_t>(milliseconds / MILLISECONDS_PER_SECOND),
                     static_cast<long>(milliseconds % MILLISECONDS_PER_SECOND) *
                         NANOSECONDS_PER_MILLISECOND};
    // A signal handler of the host interrupts nanosleep, which then stores the remaining time.
    while (nanosleep(&rest, &rest) != 0 && errno == EINTR) {
    }
}

} // namespace qor::platform
