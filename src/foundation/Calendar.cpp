// SPDX-License-Identifier: MIT
#include "qor/StringUtil.h"

#include <cstddef>

namespace qor
{

namespace
{

struct TDate {
    std::int64_t year;
    unsigned int month;
    unsigned int day;
};

/// Converts days since the start of 1970 to a date of the proleptic Gregorian calendar.
///
/// This is civil-from-days (H. Hinnant, "chrono-Compatible Low-Level Date Algorithms", 2013). Years
/// begin on the 1st of March, so that the leap day is the last one. An era has 400 years. The
/// divisors 1460, 36524 and 146096 count the leap days of 4, 100 and 400 years. Without these leap
/// days, each year has 365 days.
TDate civilFromDays(std::int64_t daysSince1970)
{
    constexpr std::int64_t DAYS_PER_ERA = 146097, DAYS_BEFORE_1970 = 719468;
    const std::int64_t days = daysSince1970 + DAYS_BEFORE_1970;
    const std::int64_t era = (days >= 0 ? days : days - (DAYS_PER_ERA - 1)) / DAYS_PER_ERA;
    const unsigned int dayOfEra = static_cast<unsigned int>(days - era * DAYS_PER_ERA);
    const unsigned int yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const unsigned int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const unsigned int monthFromMarch = (5 * dayOfYear + 2) / 153;
    const unsigned int month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
    return {yearOfEra + era * 400 + (month <= 2 ? 1 : 0), month,
            dayOfYear - (153 * monthFromMarch + 2) / 5 + 1};
}

/// Writes a text from its end to its start.
class BackwardWriter
{
public:
    void put(char character) { *--m_Begin = character; }

    /// Puts the last two decimal digits of a number.
    void putTwoDigits(std::uint64_t number)
    {
        constexpr std::uint64_t BASE = 10;
        put(static_cast<char>('0' + number % BASE));
        put(static_cast<char>('0' + number / BASE % BASE));
    }

    std::string getText() const
    {
        return std::string(m_Begin, static_cast<std::size_t>(m_Text + sizeof m_Text - m_Begin));
    }

private:
    char m_Text[32] = {}; ///< fits a sign, 12 digits of the year and 15 other characters
    char* m_Begin = m_Text + sizeof m_Text;
};

} // namespace

std::string StringUtil::timeStampToString(std::int64_t timeStamp, bool withDate)
{
    constexpr std::int64_t SECONDS_PER_DAY = 86400;
    std::int64_t days = timeStamp / SECONDS_PER_DAY;
    std::int64_t remainder = timeStamp % SECONDS_PER_DAY;
    if (remainder < 0) {
        remainder += SECONDS_PER_DAY;
        --days;
    }

    BackwardWriter text;
    const unsigned int secondOfDay = static_cast<unsigned int>(remainder);
    text.putTwoDigits(secondOfDay % 60);
    text.put(':');
    text.putTwoDigits(secondOfDay / 60 % 60);
    text.put(':');
    text.putTwoDigits(secondOfDay / 3600);
    if (!withDate) {
        return text.getText();
    }

    const TDate date = civilFromDays(days);
    text.put(' ');
    text.putTwoDigits(date.day);
    text.put('-');
    text.putTwoDigits(date.month);
    text.put('-');
    std::uint64_t year = static_cast<std::uint64_t>(date.year < 0 ? -date.year : date.year);
    text.putTwoDigits(year);
    text.putTwoDigits(year / 100);
    for (year /= 10000; year > 0; year /= 10) {
        text.put(static_cast<char>('0' + year % 10));
    }
    if (date.year < 0) {
        text.put('-');
    }
    return text.getText();
}

} // namespace qor
