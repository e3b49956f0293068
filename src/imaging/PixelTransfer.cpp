// SPDX-License-Identifier: MIT
#include "imaging/PixelTransfer.h"

#include <cstring>
#include <type_traits>

#include "imaging/TargetClones.h"

namespace qor
{

namespace
{

constexpr std::ptrdiff_t PIXEL_SIZE = sizeof(std::uint32_t);
constexpr std::uint32_t COLOR_BITS = 0x00FFFFFF;
constexpr std::uint32_t ALL_BITS = 0xFFFFFFFF;

/// Loads a pixel from an address of any alignment.
std::uint32_t loadPixel(const unsigned char* source)
{
    std::uint32_t pixel;
    std::memcpy(&pixel, source, sizeof pixel);
    return pixel;
}

/// Tests the black color key. Returns ALL_BITS if the pixel is black and so fails, else 0.
struct ColorKeyTest {
    std::uint32_t operator()(std::uint32_t pixel) const
    {
        return (pixel & COLOR_BITS) == 0 ? ALL_BITS : 0;
    }
};

/// Tests an alpha threshold. Returns ALL_BITS if the alpha is below the level, else 0.
struct AlphaTest {
    int level;

    std::uint32_t operator()(std::uint32_t pixel) const
    {
        return static_cast<int>(pixel >> 24) < level ? ALL_BITS : 0;
    }
};

/// Transfers one row. Where a pixel fails, the old target pixel is written again. So the loop has
/// no branch, and compilers vectorize it.
/// @return the number of pixels that failed
template<typename TTest, typename TStep>
std::uint32_t transferRow(const unsigned char* source, unsigned char* target,
                          std::ptrdiff_t columns, TStep step, std::uint32_t alpha, TTest test)
{
    std::uint32_t failures = 0;
    const std::ptrdiff_t end = columns * PIXEL_SIZE;
    for (std::ptrdiff_t from = 0, to = 0; to < end; from += step, to += PIXEL_SIZE) {
        const std::uint32_t pixel = loadPixel(source + from);
        const std::uint32_t old = loadPixel(target + to);
        const std::uint32_t failMask = test(pixel);
        const std::uint32_t result =
            (((pixel & COLOR_BITS) | alpha) & ~failMask) | (old & failMask);
        std::memcpy(target + to, &result, sizeof result);
        failures -= failMask; // subtracting ALL_BITS, which is -1 modulo 2^32, adds 1
    }
    return failures;
}

/// Transfers all rows. TStep is an integer or an integral constant.
/// @return the number of pixels that passed
template<typename TTest, typename TStep>
QORTK_TARGET_CLONES int transferRows(const void* source, void* target,
                                     const TKeyedTransfer& transfer, TStep step, TTest test)
{
    const auto columns = static_cast<std::uint32_t>(transfer.columns);
    std::uint32_t count = 0;
    std::ptrdiff_t sourceOffset = 0, targetOffset = 0;
    for (std::ptrdiff_t row = 0; row < transfer.rows; ++row) {
        count += columns - transferRow(static_cast<const unsigned char*>(source) + sourceOffset,
                                       static_cast<unsigned char*>(target) + targetOffset,
                                       transfer.columns, step, transfer.alpha, test);
        sourceOffset += transfer.sourceAdvance;
        targetOffset += transfer.targetAdvance;
    }
    return static_cast<int>(count);
}

/// Transfers all rows. The common steps 1 and 2 are constants of separate loops, so that compilers
/// can vectorize them.
template<typename TTest>
int transferKeyed(const void* source, void* target, const TKeyedTransfer& transfer, TTest test)
{
    using OnePixel = std::integral_constant<std::ptrdiff_t, PIXEL_SIZE>;
    using TwoPixels = std::integral_constant<std::ptrdiff_t, 2 * PIXEL_SIZE>;
    if (transfer.step == OnePixel()) {
        return transferRows(source, target, transfer, OnePixel(), test);
    }
    if (transfer.step == TwoPixels()) {
        return transferRows(source, target, transfer, TwoPixels(), test);
    }
    return transferRows(source, target, transfer, transfer.step, test);
}

} // namespace

int transferByColorKey(const void* source, void* target, const TKeyedTransfer& transfer)
{
    return transferKeyed(source, target, transfer, ColorKeyTest());
}

int transferByAlpha(const void* source, void* target, const TKeyedTransfer& transfer,
                    int alphaLevel)
{
    return transferKeyed(source, target, transfer, AlphaTest{alphaLevel});
}

} // namespace qor
