// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "qor/Export.h"

namespace qor
{

/// Operations on colors of four floats: red, green, blue, alpha, each nominally from 0 to 1.
///
/// All operations are static and take constant time. Arithmetic applies to red, green and blue: it
/// does not read alpha, and leaves the alpha of `out` unchanged.
///
/// **Ownership**: the caller owns all arrays. Every array has four elements and is not null. A
/// result array may be the same as an input array.
///
/// **Error handling**: no operation fails or throws. NaN, infinities and overflow follow IEEE 754.
///
/// **Thread safety**: operations on different arrays may run in different threads at the same time.
///
/// @code
/// const float light[4] = {1.0f, 0.75f, 0.5f, 1.0f};
/// float glow[4] = {0.0f, 0.0f, 0.0f, 1.0f};
/// qor::Color::multiply(light, 1.5f, glow);
/// qor::Color::clip(glow, 0.0f, 1.0f, glow);
/// const std::uint32_t pixel = qor::Color::rgba(glow); // 0xFFFFFFBF
/// @endcode
class QORTK_API Color
{
public:
    /// Copies a color, including its alpha.
    /// @param in color to copy
    /// @param[out] out the copy
    static void copy(const float* in, float* out);

    /// Adds red, green and blue of two colors.
    /// @param a first color
    /// @param b second color
    /// @param[out] out the sum
    static void add(const float* a, const float* b, float* out);

    /// Subtracts red, green and blue of two colors.
    /// @param a first color
    /// @param b second color
    /// @param[out] out the difference `a` - `b`
    static void subtract(const float* a, const float* b, float* out);

    /// Multiplies two colors channel by channel, except alpha.
    /// @param a first color
    /// @param b second color
    /// @param[out] out the products
    static void multiply(const float* a, const float* b, float* out);

    /// Multiplies red, green and blue by a factor.
    /// @param in color
    /// @param factor any number
    /// @param[out] out the products
    static void multiply(const float* in, float factor, float* out);

    /// Clamps red, green and blue. A value above `high` becomes `high`; otherwise a value below
    /// `low` becomes `low`. NaN stays NaN.
    /// @param in color
    /// @param low lower limit
    /// @param high upper limit
    /// @param[out] out the clamped channels
    static void clip(const float* in, float low, float high, float* out);

    /// Scales red, green and blue by one factor, so that the largest channel becomes 1. Channels
    /// that are negative or NaN become 0. If no channel is above 0, all three become 0.
    ///
    /// Alpha is clamped to the range 0 to 1. An alpha of NaN stays NaN.
    /// @param in color
    /// @param[out] out the normalized color, including alpha
    static void normalize(const float* in, float* out);

    /// Packs a color into a pixel: alpha in bits 31 to 24, then red, green and blue.
    ///
    /// Each channel is multiplied by 255 and truncated to a signed 32-bit integer. A product
    /// outside the range of that type becomes its minimum or maximum; NaN becomes 0. The integers
    /// are shifted into place and combined by bitwise OR, without a reduction to eight bits: a
    /// value above 1 also sets bits of the higher channels, and a negative value sets all of them.
    /// Therefore call clip() first for values outside 0 to 1.
    /// @param in color
    /// @return the pixel
    [[nodiscard]] static std::uint32_t rgba(const float* in);
};

} // namespace qor
