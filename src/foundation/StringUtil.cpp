// SPDX-License-Identifier: MIT
#include "qor/StringUtil.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <string_view>
#include <system_error>

#include "foundation/NumberParsing.h"
#include "foundation/NumberWriting.h"
#include "foundation/Whitespace.h"

namespace qor
{

namespace
{

/// Returns the number at the start of a text; 0 if there is no number or it is out of range.
unsigned int readUnsigned(std::string_view digits)
{
    unsigned int number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

/// Removes a decimal number of any length from the start of a text.
/// @return the low eight bits of the number; nothing if the text does not begin with a number
std::optional<unsigned int> takeVersionField(std::string_view& text)
{
    text = withoutLeadingSpace(text);
    const bool isNegative = !text.empty() && text.front() == '-';
    if (isNegative || (!text.empty() && text.front() == '+')) {
        text.remove_prefix(1);
    }
    if (text.empty() || !isDigit(text.front())) {
        return std::nullopt;
    }
    unsigned int field = 0;
    while (!text.empty() && isDigit(text.front())) {
        field = (field * 10 + static_cast<unsigned int>(text.front() - '0')) & 0xFF;
        text.remove_prefix(1);
    }
    return (isNegative ? 0 - field : field) & 0xFF;
}

template<typename TNumber>
std::string toDecimalText(TNumber number)
{
    char digits[std::numeric_limits<TNumber>::digits10 + 2];
    const std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, number);
    return std::string(digits, result.ptr);
}

} // namespace

unsigned int StringUtil::versionStringToNumber(const std::string& text)
{
    std::string_view rest = text;
    unsigned int version = 0;
    for (int field = 0; field < 3; ++field) {
        if (field > 0) {
            if (rest.empty() || rest.front() != '.') {
                return 0;
            }
            rest.remove_prefix(1);
        }
        const std::optional<unsigned int> number = takeVersionField(rest);
        if (!number) {
            return 0;
        }
        version = (version | *number) << 8;
    }
    return version;
}

std::string StringUtil::versionNumberToString(unsigned int version)
{
    return std::to_string(version >> 24 & 0xFF) + '.' + std::to_string(version >> 16 & 0xFF) + '.' +
           std::to_string(version >> 8 & 0xFF);
}

float StringUtil::stringToFloat(const std::string& text)
{
    return readFloat(text).value_or(0.0f);
}

int StringUtil::stringToInt(const std::string& text)
{
    return readInteger(text).value_or(0);
}

unsigned int StringUtil::stringToUInt(const std::string& text)
{
    const std::string_view number = withoutPlus(withoutLeadingSpace(text));
    if (number.empty() || number.front() != '-') {
        return readUnsigned(number);
    }
    const std::string_view digits = number.substr(1);
    return digits.empty() || !isDigit(digits.front()) ? 0 : 0 - readUnsigned(digits);
}

std::string StringUtil::trim(const std::string& text)
{
    return std::string(trimmed(text));
}

std::string StringUtil::toString(float number, int precision)
{
    constexpr int DEFAULT_PRECISION = 6;
    // The digits of a float after the 149th are zeros.
    constexpr int MAX_EXACT_PRECISION = 149;

    const int digits = precision < 0 ? DEFAULT_PRECISION : precision;
    const int exactDigits = std::min(digits, MAX_EXACT_PRECISION);
    char buffer[fixedTextSize<float>(MAX_EXACT_PRECISION)];
    std::string text(writeFixed(buffer, number, exactDigits));
    if (std::isfinite(number)) {
        text.append(static_cast<std::size_t>(digits - exactDigits), '0');
    }
    return text;
}

std::string StringUtil::toString(int number)
{
    return toDecimalText(number);
}

std::string StringUtil::toString(unsigned int number)
{
    return toDecimalText(number);
}

} // namespace qor
