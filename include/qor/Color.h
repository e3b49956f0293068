#pragma once

#include <cstdint>

#include "qor/Export.h"

namespace qor
{

/// Operations on colors of four floats: red, green, blue, alpha, each nominally from 0 to 1.
///
/// All operations are static. The caller owns all arrays. Result arrays come last and may be the
/// same as an input. Arithmetic applies to red, green and blue: it reads no alpha and leaves the
/// alpha of `out` unchanged. Objects of this class have no members. No operation fails or throws:
/// NaN, infinities and overflow follow IEEE 754.
///
/// Thread safety: operations on different arrays may run in different threads at the same time.
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
    /// @param a,b colors
    /// @param[out] out the sum
    static void add(const float* a, const float* b, float* out);

    /// Subtracts red, green and blue of two colors.
    /// @param a,b colors
    /// @param[out] out the difference `a` - `b`
    static void subtract(const float* a, const float* b, float* out);

    /// Multiplies red, green and blue of two colors, each channel with its like.
    /// @param a,b colors
    /// @param[out] out the products
    static void multiply(const float* a, const float* b, float* out);

    /// Multiplies red, green and blue by a factor.
    /// @param in color
    /// @param factor any number
    /// @param[out] out the products
    static void multiply(const float* in, float factor, float* out);

    /// Limits red, green and blue. A value above `high` becomes `high`; otherwise a value below
    /// `low` becomes `low`. NaN stays NaN.
    /// @param in color
    /// @param low,high limits
    /// @param[out] out the limited channels
    static void clip(const float* in, float low, float high, float* out);

    /// Scales red, green and blue, up or down, so that the largest becomes 1. Negative values and
    /// NaN become 0. If no channel is above 0, all three become 0. Alpha is limited to 0 to 1; NaN
    /// stays NaN.
    /// @param in color
    /// @param[out] out the normalized color, including alpha
    static void normalize(const float* in, float* out);

    /// Packs a color into a pixel: alpha in bits 31 to 24, then red, green and blue.
    ///
    /// Each element is multiplied by 255 and truncated to a 32-bit integer, without limiting it to
    /// a byte: values above 1 spill into the next higher channel, and negative values set all bits
    /// of the higher channels. A product outside the 32-bit integers saturates; NaN counts as 0.
    /// Call clip() first for values outside 0 to 1.
    /// @param in color
    /// @return the pixel
    [[nodiscard]] static std::uint32_t rgba(const float* in);
};

} // namespace qor
