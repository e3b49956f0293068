// SPDX-License-Identifier: MIT
#pragma once

#include <charconv>
#include <cstddef>
#include <limits>
#include <string_view>

namespace qor
{

/// Returns the maximum length of a number in fixed notation.
template<typename TNumber>
constexpr std::size_t fixedTextSize(int precision)
{
    // Sign, digits before the point, point, digits after it.
    return static_cast<std::size_t>(std::numeric_limits<TNumber>::max_exponent10 + precision) + 3;
}

/// Writes a number in fixed notation of the classic locale.
/// @param buffer at least fixedTextSize() characters
/// @param precision digits after the point
/// @return the text in the buffer
template<typename TNumber, std::size_t SIZE>
std::string_view writeFixed(char (&buffer)[SIZE], TNumber number, int precision)
{
    const std::to_chars_result result =
        std::to_chars(buffer, buffer + SIZE, number, std::chars_format::fixed, precision);
    return {buffer, static_cast<std::size_t>(result.ptr - buffer)};
}

} // namespace qor
