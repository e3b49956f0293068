#include "foundation/StreamText.h"

#include <algorithm>
#include <cmath>

namespace qor
{

namespace
{

/// Tells a number that is nearer to 0 than any float from one that is too great.
bool isFraction(std::string_view number)
{
    const std::size_t exponentMark = std::min(number.find_first_of("eE"), number.size());
    bool isBehindPoint = false;
    bool isSignificant = false;
    long long magnitude = 0; // the place of the first digit that is not 0, in front of the point
    for (const char character : number.substr(0, exponentMark)) {
        isBehindPoint = isBehindPoint || character == '.';
        isSignificant = isSignificant || (character >= '1' && character <= '9');
        if (isDigit(character) && isSignificant != isBehindPoint) {
            magnitude += isSignificant ? 1 : -1;
        }
    }
    std::string_view digits = number.substr(std::min(exponentMark + 1, number.size()));
    const bool isNegative = !digits.empty() && digits.front() == '-';
    digits = withoutPlus(digits);
    long long exponent = 0;
    const std::from_chars_result result =
        std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
    if (result.ec == std::errc::result_out_of_range) {
        return isNegative;
    }
    return magnitude + exponent < 0;
}

} // namespace

std::optional<float> readFloat(std::string_view text)
{
    const std::string_view number = withoutPlus(withoutLeadingSpace(text));
    // std::from_chars knows "inf" and "nan"; as for a stream, these are no numbers here.
    const std::size_t first = !number.empty() && number.front() == '-' ? 1 : 0;
    if (number.size() == first || !(isDigit(number[first]) || number[first] == '.')) {
        return std::nullopt;
    }

    const char* const end = number.data() + number.size();
    float value = 0.0f;
    const std::from_chars_result result = std::from_chars(number.data(), end, value);
    // What stands behind the number may look like more of it.
    const auto length = static_cast<std::size_t>(result.ptr - number.data());
    if (result.ec == std::errc::result_out_of_range && isFraction(number.substr(0, length))) {
        return number.front() == '-' ? -0.0f : 0.0f;
    }
    if (result.ec != std::errc() || std::isinf(value)) {
        return std::nullopt;
    }
    if (result.ptr == end || (*result.ptr != 'e' && *result.ptr != 'E')) {
        return value;
    }
    // An exponent without digits spoils the number; a second exponent merely ends it.
    const auto isExponent = [](char character) { return character == 'e' || character == 'E'; };
    return std::any_of(number.data(), result.ptr, isExponent) ? std::optional<float>(value)
                                                              : std::nullopt;
}

} // namespace qor
