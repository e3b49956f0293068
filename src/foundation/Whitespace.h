// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace qor
{

/// Checks for white space of values and documents: blank, tab, line feed or carriage return.
inline bool isWhitespace(char character)
{
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

/// Returns a text without the white space at its ends.
inline std::string_view trimmed(std::string_view text)
{
    const char* begin = text.data();
    const char* end = begin + text.size();
    while (begin != end && isWhitespace(*begin)) {
        ++begin;
    }
    while (begin != end && isWhitespace(end[-1])) {
        --end;
    }
    return {begin, static_cast<std::string_view::size_type>(end - begin)};
}

} // namespace qor
