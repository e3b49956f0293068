// SPDX-License-Identifier: MIT
#include "platform/Platform.h"
#include "platform/windows/FileTime.h"
#include "platform/windows/SystemHeaders.h"

namespace qor::platform
{

TWallClock getWallClock()
{
    constexpr std::int64_t FILE_TIMES_PER_MILLISECOND = FILE_TIMES_PER_SECOND / 1000;
    FILETIME now = {};
    GetSystemTimeAsFileTime(&now);
    const std::int64_t time = sinceStartOf1970(now);
    std::int64_t second = time / FILE_TIMES_PER_SECOND;
    std::int64_t rest = time % FILE_TIMES_PER_SECOND;
    if (rest < 0) {
        --second;
        rest += FILE_TIMES_PER_SECOND;
    }
    return {second, static_cast<int>(rest / FILE_TIMES_PER_MILLISECOND)};
}

TLocalTime getLocalTime(std::int64_t second)
{
    const auto count =
        static_cast<std::uint64_t>(second * FILE_TIMES_PER_SECOND + FILE_TIME_OF_1970);
    const FILETIME time = {static_cast<DWORD>(count), static_cast<DWORD>(count >> 32)};
    SYSTEMTIME utc = {};
    SYSTEMTIME local = {};
    FileTimeToSystemTime(&time, &utc);
    SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local);
    return {local.wYear, local.wMonth, local.wDay, local.wHour, local.wMinute, local.wSecond};
}

unsigned int getTickCount()
{
    return GetTickCount();
}

} // namespace qor::platform
