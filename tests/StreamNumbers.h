#pragma once

#include <cmath>
#include <iomanip>
#include <locale>
#include <sstream>
#include <string>

/// Reads a value as a stream of the classic locale does.
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
