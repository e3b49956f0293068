#pragma once

#include <immintrin.h>

#include "checksum/CRCFolding.h"
#include "checksum/CRCTables.h"

// Folding for all vector widths. Each file that includes this one is compiled for other
// instructions. Everything here has internal linkage, so that the linker cannot share a function
// between them.

namespace qor
{

namespace
{

constexpr std::size_t LANE_COUNT = 4, MAX_WIDTH = 64, PART_SIZE = TCRCFolding::UNIT;

/// Factors that move 16 bytes to a later place in the data.
struct TFoldConstants {
    long long first, second;
};

/// @return x to the power of `exponent`, shifted by one bit: the product of two reflected numbers
///         is one bit too low
constexpr long long powerOfX(std::size_t exponent)
{
    std::uint32_t value = 0x80000000;
    for (std::size_t i = 0; i < exponent; ++i) {
        value = multiplyByX(value);
    }
    return static_cast<long long>(value) << 1;
}

/// Factors by distance, in units of 16 bytes.
struct TFoldConstantTable {
    constexpr TFoldConstantTable() : entries()
    {
        for (std::size_t i = 1; i <= LANE_COUNT * MAX_WIDTH / PART_SIZE; ++i) {
            // The first half is 64 bits further away, and a product ends 32 bits after its half.
            const std::size_t bits = i * PART_SIZE * 8;
            entries[i] = {powerOfX(bits + 32), powerOfX(bits - 32)};
        }
    }

    TFoldConstants entries[LANE_COUNT * MAX_WIDTH / PART_SIZE + 1];
};

constexpr TFoldConstantTable FOLD_CONSTANTS;

/// @return the quotient of x^64 and the polynomial, for Barrett reduction
constexpr long long barrettQuotient()
{
    std::uint32_t value = 0x80000000;
    long long quotient = 0;
    for (int i = -31; i <= 32; ++i) {
        // The bit that leaves the register is where the polynomial is subtracted.
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
struct TVector128 {
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
        return _mm_set_epi64x(constants.second, constants.first);
    }
    static Type fromRegister(std::uint32_t value)
    {
        return _mm_cvtsi32_si128(static_cast<int>(value));
    }
    static Type add(Type a, Type b) { return _mm_xor_si128(a, b); }

    /// Moves the bytes by the distance of the constants and adds them to the target.
    static Type foldInto(Type target, Type bytes, Type constants)
    {
        const Type first = _mm_clmulepi64_si128(bytes, constants, 0x00);
        const Type second = _mm_clmulepi64_si128(bytes, constants, 0x11);
        return add(add(first, second), target);
    }
};

/// Adds all vectors at the place of the last one.
template<typename TVector, std::size_t COUNT>
typename TVector::Type combine(const typename TVector::Type (&vectors)[COUNT])
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

/// @return the register after these 16 bytes, which is empty before them
std::uint32_t reduce(__m128i bytes)
{
    constexpr long long BEYOND_HALF = foldConstants(PART_SIZE).second, X_64 = powerOfX(64);
    constexpr long long QUOTIENT = barrettQuotient();
    constexpr long long WHOLE_POLYNOMIAL = static_cast<long long>(POLYNOMIAL) << 1 | 1;
    // From 128 bits to 96, then to 64. The register's width of 32 bits is part of the factors.
    __m128i sum = _mm_clmulepi64_si128(bytes, _mm_set_epi64x(0, BEYOND_HALF), 0x00);
    sum = _mm_xor_si128(sum, _mm_srli_si128(bytes, 8));
    sum = _mm_xor_si128(_mm_srli_si128(sum, 4), multiplyLow32(sum, X_64));
    // Barrett reduction to 32.
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
    const auto left = [&] { return static_cast<std::size_t>(end - data); };

    // Several lanes, since each product takes several cycles.
    Type lanes[LANE_COUNT] = {TVector::add(TVector::load(data), TVector::fromRegister(value)),
                              TVector::load(data + WIDTH), TVector::load(data + 2 * WIDTH),
                              TVector::load(data + 3 * WIDTH)};
    const Type overBlock = TVector::fromConstants(foldConstants(BLOCK));
    for (data += BLOCK; left() >= BLOCK; data += BLOCK) {
        for (std::size_t i = 0; i < LANE_COUNT; ++i) {
            lanes[i] = TVector::foldInto(TVector::load(data + i * WIDTH), lanes[i], overBlock);
        }
    }
    Type sum = combine<TVector>(lanes);
    const Type overVector = TVector::fromConstants(foldConstants(WIDTH));
    for (; left() >= WIDTH; data += WIDTH) {
        sum = TVector::foldInto(TVector::load(data), sum, overVector);
    }

    unsigned char bytes[WIDTH];
    TVector::store(bytes, sum);
    __m128i parts[WIDTH / PART_SIZE];
    for (std::size_t i = 0; i < WIDTH / PART_SIZE; ++i) {
        parts[i] = TVector128::load(bytes + i * PART_SIZE);
    }
    const __m128i overPart = TVector128::fromConstants(foldConstants(PART_SIZE));
    __m128i last = combine<TVector128>(parts);
    for (; left() >= PART_SIZE; data += PART_SIZE) {
        last = TVector128::foldInto(TVector128::load(data), last, overPart);
    }
    return reduce(last);
}

} // namespace

} // namespace qor
