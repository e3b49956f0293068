#pragma once

#include <string_view>

namespace qor
{

/// What a formatted standard stream skips in front of a number or a word.
inline bool isStreamSpace(char character)
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

inline bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

inline std::string_view withoutLeadingSpace(std::string_view text)
{
    while (!text.empty() && isStreamSpace(text.front())) {
        text.remove_prefix(1);
    }
    return text;
}

/// Reads a boolean word from the start of the text, whatever follows it.
inline bool readBoolean(std::string_view text)
{
    return withoutLeadingSpace(text).substr(0, 4) == "true";
}

} // namespace qor
