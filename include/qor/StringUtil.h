// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "qor/Export.h"

namespace qor
{

/// Conversions between text and numbers, versions and timestamps.
///
/// All operations are static and keep no state. Numbers are read and written as in the "C" locale,
/// independent of the locale of the host.
///
/// **Error handling**: a text that is not a number or a version gives 0. Operations that return
/// text throw `std::bad_alloc` if there is not enough memory.
///
/// **Thread safety**: any thread may call any operation.
///
/// **Complexity**: every operation takes time proportional to the length of the text.
///
/// @code
/// const unsigned int version = qor::StringUtil::versionStringToNumber("1.2.3"); // 0x01020300
/// const std::string text = qor::StringUtil::toString(1.5f, 2);                  // "1.50"
/// const int answer = qor::StringUtil::stringToInt("  42 apples");               // 42
/// @endcode
class QORTK_API StringUtil
{
public:
    StringUtil() = delete;

    /// Packs a version into a number.
    /// @param text three decimal numbers separated by dots: "major.minor.patch". Each number may
    ///        follow white space and have a sign. Text after the third number is ignored.
    /// @return major << 24 | minor << 16 | patch << 8, with each number reduced to its low eight
    ///         bits; 0 if the text does not begin with three numbers
    [[nodiscard]] static unsigned int versionStringToNumber(const std::string& text);

    /// Converts a packed version to text.
    /// @param version number as from versionStringToNumber(); its low eight bits are ignored
    /// @return "major.minor.patch"
    [[nodiscard]] static std::string versionNumberToString(unsigned int version);

    /// Reads a number from the start of a text, as a standard stream does. Leading white space is
    /// skipped, a sign is accepted, and text after the number is ignored.
    /// @param text the number. Words such as "inf", and numbers that have an exponent mark without
    ///        digits, are not accepted. After a minus sign, stringToUInt(), and only that function,
    ///        negates the number modulo 2 to the power of 32: "-1" gives the maximum.
    /// @return the number; 0 if the text does not begin with a number or the number exceeds the
    ///         range of the type
    /// @{
    [[nodiscard]] static float stringToFloat(const std::string& text);
    [[nodiscard]] static int stringToInt(const std::string& text);
    [[nodiscard]] static unsigned int stringToUInt(const std::string& text);
    /// @}

    /// Converts a timestamp to text in UTC.
    /// @param timeStamp any number of seconds since the start of 1970. Dates follow the proleptic
    ///        Gregorian calendar.
    /// @param withDate whether the date precedes the time
    /// @return the time in the format "%H:%M:%S" or "%Y-%m-%d %H:%M:%S". A year has at least four
    ///         digits.
    [[nodiscard]] static std::string timeStampToString(std::int64_t timeStamp, bool withDate);

    /// Removes blanks, tabs, line feeds and carriage returns at both ends of a text.
    /// @param text text to trim
    /// @return the trimmed text
    [[nodiscard]] static std::string trim(const std::string& text);

    /// Writes a float in fixed notation, rounded to the nearest number, ties to even.
    /// @param number number to write
    /// @param precision number of digits after the point; a negative precision means 6
    /// @return the text; "inf", "-inf", "nan" or "-nan" for infinities and NaN
    [[nodiscard]] static std::string toString(float number, int precision);

    /// Writes an integer in decimal.
    /// @param number number to write
    /// @return the digits, after a minus sign if the number is negative
    /// @{
    [[nodiscard]] static std::string toString(int number);
    [[nodiscard]] static std::string toString(unsigned int number);
    /// @}
};

} // namespace qor
