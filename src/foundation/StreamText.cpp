#include "foundation/StreamText.h"

#include <algorithm>
#include <cmath>

namespace qor
{

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
