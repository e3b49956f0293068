// SPDX-License-Identifier: MIT
#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace qor
{

/// Checks for the white space that a formatted standard stream skips before a number or a word.
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

/// Drops a plus sign, which streams accept and std::from_chars does not. Returns an empty text if a
/// minus sign follows it, because that is not a number.
inline std::string_view withoutPlus(std::string_view text)
{
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
        if (!text.empty() && text.front() == '-') {
            return {};
        }
    }
    return text;
}

/// Reads an integer from the start of a text. Ignores text after the number.
/// @return nothing if there is no number or it exceeds the range of the type
inline std::optional<int> readInteger(std::string_view text)
{
    const std::string_view digits = withoutPlus(withoutLeadingSpace(text));
    int number = 0;
    const std::from_chars_result result =
        std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return result.ec == std::errc() ? std::optional<int>(number) : std::nullopt;
}

/// Reads a float from the start of a text. Ignores text after the number. A number too close to 0
/// for a float is 0.
/// @return nothing if there is no number or it exceeds the range of the type
std::optional<float> readFloat(std::string_view text);

/// Reads "true" or "false" from the start of a text. Ignores text after the word.
/// @return nothing if the text begins with neither word
inline std::optional<bool> readBoolean(std::string_view text)
{
    const std::string_view word = withoutLeadingSpace(text);
    if (word.substr(0, 4) == "true") {
        return true;
    }
    return word.substr(0, 5) == "false" ? std::optional<bool>(false) : std::nullopt;
}

} // namespace qor
