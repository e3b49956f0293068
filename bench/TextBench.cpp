// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <ctime>
#include <random>
#include <string>
#include <vector>

#ifdef HAVE_FAST_FLOAT
#include <fast_float/fast_float.h>
#endif

#include "qor/qor.h"

// Compares conversions of numbers with <charconv> and fast_float, which do not skip white space.
// All contestants write to a string. Compares time stamps with a version that handles only years of
// four digits, and with strftime.

namespace
{

constexpr std::size_t COUNT = 1000;

template<typename TNumber>
std::vector<TNumber> numbers()
{
    std::mt19937 random(7);
    std::vector<TNumber> list;
    for (std::size_t i = 0; i < COUNT; ++i) {
        if constexpr (std::is_floating_point_v<TNumber>) {
            list.push_back(static_cast<TNumber>(random() % 2000000) / 1000 - 1000);
        } else {
            list.push_back(static_cast<TNumber>(random() % 2000000) - 1000000);
        }
    }
    return list;
}

template<typename TNumber>
std::vector<std::string> texts()
{
    std::vector<std::string> list;
    for (const TNumber number : numbers<TNumber>()) {
        qor::XMLElement element("number");
        element.setValue(number);
        list.push_back(element.getValue());
    }
    return list;
}

template<typename TNumber, typename TRead>
void read(benchmark::State& state, TRead readNumber)
{
    const std::vector<std::string> list = texts<TNumber>();
    for (auto _ : state) {
        for (const std::string& text : list) {
            benchmark::DoNotOptimize(readNumber(text));
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(COUNT));
}

template<typename TNumber>
TNumber readBare(const std::string& text)
{
    TNumber number{};
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

template<typename TNumber, typename TWrite>
void write(benchmark::State& state, TWrite writeNumber)
{
    const std::vector<TNumber> list = numbers<TNumber>();
    for (auto _ : state) {
        for (const TNumber number : list) {
            writeNumber(number);
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(COUNT));
}

void readInteger(benchmark::State& state)
{
    read<int>(state, qor::StringUtil::stringToInt);
}

void readIntegerBare(benchmark::State& state)
{
    read<int>(state, readBare<int>);
}

void readFloat(benchmark::State& state)
{
    read<float>(state, qor::StringUtil::stringToFloat);
}

void readFloatBare(benchmark::State& state)
{
    read<float>(state, readBare<float>);
}

#ifdef HAVE_FAST_FLOAT
void readFloatFast(benchmark::State& state)
{
    read<float>(state, [](const std::string& text) {
        float number = 0;
        fast_float::from_chars(text.data(), text.data() + text.size(), number);
        return number;
    });
}

BENCHMARK(readFloatFast)->Name("read/float/fast_float");
#endif

template<typename TNumber>
void writeValue(benchmark::State& state)
{
    qor::XMLElement element("number");
    write<TNumber>(state, [&element](TNumber number) {
        element.setValue(number);
        benchmark::ClobberMemory();
    });
}

void writeIntegerBare(benchmark::State& state)
{
    std::string text;
    write<int>(state, [&text](int number) {
        char digits[16];
        text.assign(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
        benchmark::ClobberMemory();
    });
}

void writeFloatBare(benchmark::State& state)
{
    std::string text;
    write<float>(state, [&text](float number) {
        char digits[64];
        text.assign(
            digits,
            std::to_chars(digits, digits + sizeof digits, number, std::chars_format::fixed, 6).ptr);
        benchmark::ClobberMemory();
    });
}

/// Returns random time stamps of 32 bits, from the years 1970 to 2106.
std::vector<std::int64_t> timeStamps()
{
    std::mt19937 random(11);
    std::vector<std::int64_t> list(COUNT);
    std::generate(list.begin(), list.end(), [&random] { return random(); });
    return list;
}

template<typename TWrite>
void writeTimeStamps(benchmark::State& state, TWrite writeTimeStamp)
{
    const std::vector<std::int64_t> list = timeStamps();
    for (const std::int64_t timeStamp : list) {
        if (writeTimeStamp(timeStamp) != qor::StringUtil::timeStampToString(timeStamp, true)) {
            state.SkipWithError("the text is different");
        }
    }
    for (auto _ : state) {
        for (const std::int64_t timeStamp : list) {
            benchmark::DoNotOptimize(writeTimeStamp(timeStamp));
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(COUNT));
}

void writeTimeStamp(benchmark::State& state)
{
    writeTimeStamps(state, [](std::int64_t timeStamp) {
        return qor::StringUtil::timeStampToString(timeStamp, true);
    });
}

/// Converts a time stamp from 1970 on whose year has four digits, by civil-from-days (H. Hinnant,
/// "chrono-Compatible Low-Level Date Algorithms"). Years begin in March there.
std::string timeStampByHand(std::int64_t timeStamp)
{
    const auto days = static_cast<unsigned int>(timeStamp / 86400) + 719468;
    const auto second = static_cast<unsigned int>(timeStamp % 86400);
    const unsigned int era = days / 146097, day = days % 146097;
    const unsigned int year = (day - day / 1460 + day / 36524 - day / 146096) / 365;
    const unsigned int dayOfYear = day - (365 * year + year / 4 - year / 100);
    const unsigned int shifted = (5 * dayOfYear + 2) / 153;
    const unsigned int month = shifted < 10 ? shifted + 3 : shifted - 9;
    const unsigned int wholeYear = year + era * 400 + (month <= 2 ? 1 : 0);
    char text[] = "0000-00-00 00:00:00";
    const auto put = [&text](int place, unsigned int number) {
        text[place] = static_cast<char>('0' + number / 10);
        text[place + 1] = static_cast<char>('0' + number % 10);
    };
    put(0, wholeYear / 100);
    put(2, wholeYear % 100);
    put(5, month);
    put(8, dayOfYear - (153 * shifted + 2) / 5 + 1);
    put(11, second / 3600);
    put(14, second / 60 % 60);
    put(17, second % 60);
    return std::string(text, sizeof text - 1);
}

void writeTimeStampByHand(benchmark::State& state)
{
    writeTimeStamps(state, timeStampByHand);
}

void writeTimeStampByStrftime(benchmark::State& state)
{
    writeTimeStamps(state, [](std::int64_t timeStamp) {
        const std::time_t seconds = timeStamp;
        char text[32];
        return std::string(
            text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", std::gmtime(&seconds)));
    });
}

BENCHMARK(writeTimeStamp)->Name("write/time-stamp/qortk");
BENCHMARK(writeTimeStampByHand)->Name("write/time-stamp/by hand");
BENCHMARK(writeTimeStampByStrftime)->Name("write/time-stamp/strftime");
BENCHMARK(readInteger)->Name("read/integer/qortk");
BENCHMARK(readIntegerBare)->Name("read/integer/from_chars");
BENCHMARK(readFloat)->Name("read/float/qortk");
BENCHMARK(readFloatBare)->Name("read/float/from_chars");
BENCHMARK(writeValue<int>)->Name("write/integer/qortk");
BENCHMARK(writeIntegerBare)->Name("write/integer/to_chars");
BENCHMARK(writeValue<float>)->Name("write/float/qortk");
BENCHMARK(writeFloatBare)->Name("write/float/to_chars");

} // namespace

BENCHMARK_MAIN();
