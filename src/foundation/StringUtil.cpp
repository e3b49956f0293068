#include "qor/StringUtil.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <string_view>
#include <system_error>

#include "foundation/NumberParsing.h"
#include "foundation/Whitespace.h"

namespace qor
{

namespace
{

unsigned int readUnsigned(std::string_view digits)
{
    unsigned int number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

/// Reads the low eight bits of a decimal number of any length and drops it from the text.
std::optional<unsigned int> takeVersionField(std::string_view& text)
{
    text = withoutLeadingSpace(text);
    const bool negative = !text.empty() && text.front() == '-';
    if (negative || (!text.empty() && text.front() == '+')) {
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
    return (negative ? 0 - field : field) & 0xFF;
}

template<typename TNumber>
std::string decimalText(TNumber number)
{
    char digits[std::numeric_limits<TNumber>::digits10 + 2];
    const std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, number);
    return std::string(digits, result.ptr);
}

void appendPadded(std::string& text, std::int64_t number, std::size_t width)
{
    std::string digits = std::to_string(number < 0 ? -number : number);
    if (number < 0) {
        text += '-';
    }
    text.append(width - std::min(width, digits.size()), '0');
    text += digits;
}

void appendDate(std::string& text, std::int64_t daysSince1970)
{
    // Counts from a 1st of March, so that the leap day is a year's last, in eras of 400 years.
    constexpr std::int64_t DAYS_PER_ERA = 146097;
    const std::int64_t day = daysSince1970 + 719468;
    const std::int64_t era = (day >= 0 ? day : day - (DAYS_PER_ERA - 1)) / DAYS_PER_ERA;
    const std::int64_t dayOfEra = day - era * DAYS_PER_ERA;
    const std::int64_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
    const std::int64_t month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;

    appendPadded(text, yearOfEra + era * 400 + (month <= 2 ? 1 : 0), 4);
    text += '-';
    appendPadded(text, month, 2);
    text += '-';
    appendPadded(text, dayOfYear - (153 * monthFromMarch + 2) / 5 + 1, 2);
    text += ' ';
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

std::string StringUtil::timeStampToString(std::int64_t timeStamp, bool withDate)
{
    constexpr std::int64_t SECONDS_PER_DAY = 86400;
    std::int64_t days = timeStamp / SECONDS_PER_DAY;
    std::int64_t second = timeStamp % SECONDS_PER_DAY;
    if (second < 0) {
        second += SECONDS_PER_DAY;
        --days;
    }

    std::string text;
    if (withDate) {
        appendDate(text, days);
    }
    appendPadded(text, second / 3600, 2);
    text += ':';
    appendPadded(text, second / 60 % 60, 2);
    text += ':';
    appendPadded(text, second % 60, 2);
    return text;
}

std::string StringUtil::trim(const std::string& text)
{
    return std::string(trimmed(text));
}

std::string StringUtil::toString(float number, int precision)
{
    constexpr int DEFAULT_PRECISION = 6;
    // No float has more digits than these; all further ones are zeros.
    constexpr int MOST_INTEGER_DIGITS = std::numeric_limits<float>::max_exponent10 + 1;
    constexpr int MOST_FRACTION_DIGITS = 149;

    const int digits = precision < 0 ? DEFAULT_PRECISION : precision;
    const int exactDigits = std::min(digits, MOST_FRACTION_DIGITS);
    char buffer[MOST_INTEGER_DIGITS + MOST_FRACTION_DIGITS + 2];
    const std::to_chars_result result = std::to_chars(buffer, buffer + sizeof buffer, number,
                                                      std::chars_format::fixed, exactDigits);
    std::string text(buffer, result.ptr);
    if (std::isfinite(number)) {
        text.append(static_cast<std::size_t>(digits - exactDigits), '0');
    }
    return text;
}

std::string StringUtil::toString(int number)
{
    return decimalText(number);
}

std::string StringUtil::toString(unsigned int number)
{
    return decimalText(number);
}

} // namespace qor
