#pragma once

#include <cstdint>
#include <string>

#include "qor/Export.h"

namespace qor
{

/// Conversions between text and numbers, versions and time stamps.
///
/// All operations are static, keep no state and may be called from any thread. Numbers are read
/// and written as in the classic locale, whatever locale the host has set.
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

    /// Packs "major.minor.patch" as major << 24 | minor << 16 | patch << 8, each field reduced to
    /// its low eight bits. Text behind the third number is ignored.
    /// @return 0 if the text does not begin with three numbers
    static unsigned int versionStringToNumber(const std::string& text);

    /// Writes a packed version as "major.minor.patch"; the low byte is not shown.
    static std::string versionNumberToString(unsigned int version);

    /// Reads one number from the start of the text, as a standard stream would: white space in
    /// front is skipped, a sign may come first, and whatever follows the number is ignored.
    /// @return 0 if there is no number, or none that the type can hold. Words such as "inf" and
    ///         an exponent without digits are no numbers. `stringToUInt` takes "-1" as the
    ///         greatest unsigned number.
    /// @{
    static float stringToFloat(const std::string& text);
    static int stringToInt(const std::string& text);
    static unsigned int stringToUInt(const std::string& text);
    /// @}

    /// Writes seconds since the start of 1970 as a UTC time, "%H:%M:%S", behind "%Y-%m-%d " if
    /// `withDate` is true. Any number is defined: dates before 1970 follow the Gregorian calendar
    /// backwards, and years take as many digits as they need, at least four.
    static std::string timeStampToString(std::int64_t timeStamp, bool withDate);

    /// @return the text without the blanks, tabs, line feeds and carriage returns at its ends
    static std::string trim(const std::string& text);

    /// Fixed notation with `precision` digits behind the point, rounded to nearest, halves that
    /// are exact in binary to the even digit. A negative precision means 6. Infinities and
    /// not-a-number give "inf", "-inf", "nan" and "-nan".
    static std::string toString(float number, int precision);

    /// Plain decimal text.
    /// @{
    static std::string toString(int number);
    static std::string toString(unsigned int number);
    /// @}
};

} // namespace qor
