// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "platform/windows/SystemHeaders.h"

namespace qor::platform
{

/// The unit of `FILETIME` is 100 ns.
constexpr std::int64_t FILE_TIMES_PER_SECOND = 10000000;

/// The start of 1970 as a `FILETIME`, which counts from the start of 1601.
constexpr std::int64_t FILE_TIME_OF_1970 = 116444736000000000;

/// Converts a `FILETIME` to units of 100 ns since the start of 1970.
inline std::int64_t sinceStartOf1970(const FILETIME& time)
{
    const std::uint64_t count =
        (static_cast<std::uint64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
    return static_cast<std::int64_t>(count) - FILE_TIME_OF_1970;
}

} // namespace qor::platform
