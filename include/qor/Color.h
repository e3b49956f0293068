#pragma once

#include <cstdint>

#include "qor/Export.h"

namespace qor
{

/// Operations on colours of four floats: red, green, blue, alpha, nominally from 0 to 1.
///
/// All operations are static. The caller owns all arrays; the result array comes last and may be
/// the same as one of the inputs. Arithmetic is on red, green and blue alone: it reads no alpha and
/// leaves that of `out` as it is. Objects of this class hold nothing, and assigning one does
/// nothing. Not-a-number, infinities and overflow follow the rules of IEEE 754.
///
/// Operations on different arrays may run in several threads at once.
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
    /// All elements of `in`, alpha included.
    static void copy(const float* in, float* out);

    /// `a` + `b`
    static void add(const float* a, const float* b, float* out);

    /// `a` - `b`
    static void subtract(const float* a, const float* b, float* out);

    /// The products of channels.
    static void multiply(const float* a, const float* b, float* out);

    /// Each channel times `factor`.
    static void multiply(const float* in, float factor, float* out);

    /// Limits red, green and blue: to `high` what is above it, to `low` what of the rest is below
    /// that. Not-a-number passes unchanged, and so does the alpha of `out`.
    static void clip(const float* in, float low, float high, float* out);

    /// Scales red, green and blue, up or down, so that the largest becomes 1; negative ones and
    /// not-a-number become 0. Without a channel above 0 all become 0. Alpha is limited to 0 to 1;
    /// not-a-number passes.
    static void normalize(const float* in, float* out);

    /// The pixel word: alpha in bits 31 to 24, then red, green and blue. Each element is multiplied
    /// by 255 and cut to an integer. Nothing is limited to a byte: what a channel has too much goes
    /// into the bits of its neighbours, and the bits of a negative number into all above it. A
    /// product beyond the 32-bit integers counts as the nearest of them, not-a-number as 0.
    static std::uint32_t rgba(const float* in);
};

} // namespace qor
