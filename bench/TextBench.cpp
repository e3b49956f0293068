#include <benchmark/benchmark.h>

#include <charconv>
#include <random>
#include <string>
#include <vector>

#ifdef HAVE_FAST_FLOAT
#include <fast_float/fast_float.h>
#endif

#include "qor/qor.h"

// Number texts: the library's conversions beside the bare ones of <charconv>. Reading by them skips
// no white space; what they write is put into a string here, as the library's texts are.

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
