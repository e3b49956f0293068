#include "checksum/CRCFolding.h"

#include <immintrin.h>

namespace qor
{

namespace
{

/// x to that power, as a factor. A product of two reflected numbers comes out one bit too low.
constexpr long long powerOfX(int exponent)
{
    std::uint32_t value = 0x80000000;
    for (int i = 0; i < exponent; ++i) {
        value = timesX(value);
    }
    return static_cast<long long>(value) << 1;
}

/// The factors that move 16 bytes onto those that stand `bits` further on. The first half is 64
/// bits further away, and each product reaches 32 bits beyond its half.
template<int BITS>
__m128i distance()
{
    constexpr long long FIRST = powerOfX(BITS + 32), SECOND = powerOfX(BITS - 32);
    return _mm_set_epi64x(SECOND, FIRST);
}

__m128i load(const unsigned char* data)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(data));
}

__m128i moved(__m128i bytes, __m128i distance, __m128i target)
{
    const __m128i first = _mm_clmulepi64_si128(bytes, distance, 0x00);
    const __m128i second = _mm_clmulepi64_si128(bytes, distance, 0x11);
    return _mm_xor_si128(_mm_xor_si128(first, second), target);
}

} // namespace

bool CRCFolding::isAvailable()
{
    return __builtin_cpu_supports("pclmul") != 0;
}

std::size_t CRCFolding::fold(std::uint32_t value, const unsigned char* data, std::size_t size,
                             unsigned char (&folded)[FOLDED_SIZE])
{
    constexpr std::size_t LANES = 4, WIDTH = sizeof(__m128i), BLOCK = LANES * WIDTH;
    const __m128i overBlock = distance<8 * BLOCK>();
    const __m128i overLane = distance<8 * WIDTH>();

    // Several lanes, as each product takes a while.
    __m128i lanes[LANES];
    for (std::size_t i = 0; i < LANES; ++i) {
        lanes[i] = load(data + i * WIDTH);
    }
    lanes[0] = _mm_xor_si128(lanes[0], _mm_cvtsi32_si128(static_cast<int>(value)));
    for (data += BLOCK, size -= BLOCK; size >= BLOCK; data += BLOCK, size -= BLOCK) {
        for (std::size_t i = 0; i < LANES; ++i) {
            lanes[i] = moved(lanes[i], overBlock, load(data + i * WIDTH));
        }
    }

    __m128i sum = lanes[0];
    for (std::size_t i = 1; i < LANES; ++i) {
        sum = moved(sum, overLane, lanes[i]);
    }
    for (; size >= WIDTH; data += WIDTH, size -= WIDTH) {
        sum = moved(sum, overLane, load(data));
    }
    _mm_storeu_si128(reinterpret_cast<__m128i*>(folded), sum);
    return size;
}

} // namespace qor
