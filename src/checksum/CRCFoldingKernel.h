// SPDX-License-Identifier: MIT
#pragma once

#include <immintrin.h>

#include "checksum/CRCFolding.h"
#include "checksum/CRCTables.h"

// Folding for all vector widths. Each file that includes this one is compiled for a different
// instruction set. Everything here has internal linkage: otherwise the linker would keep one copy
// of each function, and processors without its instructions would run it.

namespace qor
{

// NOLINTBEGIN(misc-definitions-in-headers): one copy for each instruction set is intended.
namespace
{

constexpr std::size_t LANE_COUNT = 4, MAX_VECTOR_SIZE = 64, PART_SIZE = TCRCFolding::UNIT;

/// The factors for the low and the high half of 16 bytes. Multiplied by them, the bytes leave the
/// same value in a CRC register as before, but at a later position in the data.
struct TFoldConstants {
    long long low, high;
};

/// Returns x^exponent modulo the polynomial, reflected and shifted left by one bit. The shift makes
/// up for the reflected product of two 64-bit numbers, which has 127 bits and is one bit too low.
constexpr long long powerOfX(std::size_t exponent)
{
    std::uint32_t value = 0x80000000;
    for (std::size_t i = 0; i < exponent; ++i) {
        value = multiplyByX(value);
    }
    return static_cast<long long>(value) << 1;
}

/// Factors by distance, in units of 16 bytes.
struct FoldConstantTable {
    constexpr FoldConstantTable() : entries()
    {
        for (std::size_t i = 1; i <= LANE_COUNT * MAX_VECTOR_SIZE / PART_SIZE; ++i) {
            // The low half moves by `bits` + 64, the high half by `bits`. In a lane of 64 bits, a
            // reflected factor of 32 bits counts x^32 times, so both exponents are smaller by 32.
            const std::size_t bits = i * PART_SIZE * 8;
            entries[i] = {powerOfX(bits + 32), powerOfX(bits - 32)};
        }
    }

    TFoldConstants entries[LANE_COUNT * MAX_VECTOR_SIZE / PART_SIZE + 1];
};

constexpr FoldConstantTable FOLD_CONSTANTS;

/// Returns the quotient of x^64 and the polynomial, reflected, for Barrett reduction. This is a
/// long division: `value` is its remainder.
constexpr long long barrettQuotient()
{
    std::uint32_t value = 0x80000000;
    long long quotient = 0;
    for (int i = -31; i <= 32; ++i) {
        // multiplyByX() subtracts the polynomial if this bit is set.
        if ((value & 1) != 0) {
            quotient |= 1LL << i;
        }
        value = multiplyByX(value);
    }
    return quotient;
}

constexpr TFoldConstants foldConstants(std::size_t distance)
{
    return FOLD_CONSTANTS.entries[distance / PART_SIZE];
}

/// The operations on vectors of 128 bits. Wider ones repeat them for each 128 bits.
struct Vector128 {
    using Type = __m128i;

    static Type load(const unsigned char* data)
    {
        return _mm_loadu_si128(reinterpret_cast<const Type*>(data));
    }
    static void store(unsigned char* data, Type vector)
    {
        _mm_storeu_si128(reinterpret_cast<Type*>(data), vector);
    }
    static Type fromConstants(TFoldConstants constants)
    {
        return _mm_set_epi64x(constants.high, constants.low);
    }
    static Type fromRegister(std::uint32_t value)
    {
        return _mm_cvtsi32_si128(static_cast<int>(value));
    }
    static Type add(Type a, Type b) { return _mm_xor_si128(a, b); }

    /// Folds bytes into a vector that is later in the data, by the distance of the constants.
    /// Returns the sum; as everywhere here, addition is XOR.
    static Type foldInto(Type target, Type bytes, Type constants)
    {
        const Type first = _mm_clmulepi64_si128(bytes, constants, 0x00);
        const Type second = _mm_clmulepi64_si128(bytes, constants, 0x11);
        return add(add(first, second), target);
    }
};

/// Folds consecutive vectors into the last one.
template<typename TVector, std::size_t COUNT>
typename TVector::Type foldAll(const typename TVector::Type (&vectors)[COUNT])
{
    typename TVector::Type sum = vectors[COUNT - 1];
    for (std::size_t i = 0; i + 1 < COUNT; ++i) {
        const std::size_t distance = (COUNT - 1 - i) * sizeof sum;
        sum = TVector::foldInto(sum, vectors[i], TVector::fromConstants(foldConstants(distance)));
    }
    return sum;
}

__m128i multiplyLow32(__m128i value, long long factor)
{
    const __m128i low = _mm_and_si128(value, _mm_set_epi32(0, 0, 0, -1));
    return _mm_clmulepi64_si128(low, _mm_set_epi64x(0, factor), 0x00);
}

/// Reduces 16 bytes modulo the polynomial.
/// @return the register after these bytes, starting from 0
std::uint32_t reduce(__m128i bytes)
{
    constexpr long long X_96 = powerOfX(96), X_64 = powerOfX(64);
    constexpr long long QUOTIENT = barrettQuotient();
    constexpr long long WHOLE_POLYNOMIAL = static_cast<long long>(POLYNOMIAL) << 1 | 1;
    // Folds 128 bits to 96, then to 64. The factors also append the 32 zero bits of a CRC.
    __m128i sum = _mm_clmulepi64_si128(bytes, _mm_set_epi64x(0, X_96), 0x00);
    sum = _mm_xor_si128(sum, _mm_srli_si128(bytes, 8));
    sum = _mm_xor_si128(_mm_srli_si128(sum, 4), multiplyLow32(sum, X_64));
    // Barrett reduction from 64 bits to 32.
    const __m128i product = multiplyLow32(multiplyLow32(sum, QUOTIENT), WHOLE_POLYNOMIAL);
    const __m128i remainder = _mm_srli_si128(_mm_xor_si128(sum, product), 4);
    return static_cast<std::uint32_t>(_mm_cvtsi128_si32(remainder));
}

template<typename TVector>
std::uint32_t fold(std::uint32_t value, const unsigned char* data, std::size_t size)
{
    using Type = typename TVector::Type;
    constexpr std::size_t WIDTH = sizeof(Type), BLOCK = LANE_COUNT * WIDTH;
    const unsigned char* const end = data + size;
    const auto remaining = [&] { return static_cast<std::size_t>(end - data); };

    // The products of the lanes are independent, which hides their latency of several cycles.
    Type lanes[LANE_COUNT] = {TVector::add(TVector::load(data), TVector::fromRegister(value)),
                              TVector::load(data + WIDTH), TVector::load(data + 2 * WIDTH),
                              TVector::load(data + 3 * WIDTH)};
    const Type blockConstants = TVector::fromConstants(foldConstants(BLOCK));
    for (data += BLOCK; remaining() >= BLOCK; data += BLOCK) {
        for (std::size_t i = 0; i < LANE_COUNT; ++i) {
            lanes[i] = TVector::foldInto(TVector::load(data + i * WIDTH), lanes[i], blockConstants);
        }
    }
    Type sum = foldAll<TVector>(lanes);
    const Type vectorConstants = TVector::fromConstants(foldConstants(WIDTH));
    for (; remaining() >= WIDTH; data += WIDTH) {
        sum = TVector::foldInto(TVector::load(data), sum, vectorConstants);
    }

    unsigned char bytes[WIDTH];
    TVector::store(bytes, sum);
    __m128i parts[WIDTH / PART_SIZE];
    for (std::size_t i = 0; i < WIDTH / PART_SIZE; ++i) {
        parts[i] = Vector128::load(bytes + i * PART_SIZE);
    }
    const __m128i partConstants = Vector128::fromConstants(foldConstants(PART_SIZE));
    __m128i last = foldAll<Vector128>(parts);
    for (; remaining() >= PART_SIZE; data += PART_SIZE) {
        last = Vector128::foldInto(Vector128::load(data), last, partConstants);
    }
    return reduce(last);
}

} // namespace
// NOLINTEND(misc-definitions-in-headers)

} // namespace qor
