// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <iomanip>
#include <locale>
#include <sstream>
#include <string>

/// @return the value that a stream with the classic locale reads; 0 or false on failure
template<typename TValue>
TValue readByStream(const std::string& text)
{
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    TValue value{};
    stream >> std::boolalpha >> value;
    return stream ? value : TValue{};
}

inline std::string writeByStream(float number, int precision)
{
    if (std::isnan(number)) {
        return std::signbit(number) ? "-nan" : "nan"; // Not every system's stream writes the sign.
    }
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream << std::fixed << std::setprecision(precision) << number;
    return stream.str();
}
