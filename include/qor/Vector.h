#pragma once

#include "qor/Export.h"

namespace qor
{

/// Operations on vectors of three floats: x, y, z.
///
/// All operations are static. The caller owns all arrays; the result array comes last and may be
/// the same as one of the inputs. Objects of this class hold nothing, and assigning one does
/// nothing. Not-a-number, infinities and overflow follow the rules of IEEE 754; sums and products
/// are rounded one by one, in the order in which they are written here.
///
/// Operations on different arrays may run in several threads at once.
///
/// @code
/// const float velocity[3] = {3.0f, 0.0f, 4.0f};
/// float direction[3] = {1.0f, 0.0f, 0.0f};
/// const float speed = qor::Vector::normalize(velocity, direction); // 5, and (0.6, 0, 0.8)
/// @endcode
class QORTK_API Vector
{
public:
    /// All elements of `in`.
    static void copy(const float* in, float* out);

    /// @return the square root of x² + y² + z²
    static float length(const float* in);

    /// `a` + `b`
    static void add(const float* a, const float* b, float* out);

    /// `a` - `b`
    static void subtract(const float* a, const float* b, float* out);

    /// The products of elements.
    static void multiply(const float* a, const float* b, float* out);

    /// Each element times `factor`.
    static void multiply(const float* in, float factor, float* out);

    /// The opposite vector, -`in`.
    static void inverse(const float* in, float* out);

    /// The cross product: (a₁b₂ - a₂b₁, a₂b₀ - a₀b₂, a₀b₁ - a₁b₀).
    static void cross(const float* a, const float* b, float* out);

    /// @return the dot product a₀b₀ + a₁b₁ + a₂b₂
    static float dot(const float* a, const float* b);

    /// Divides by the length. Where that is 0 or not a number, `out` stays as it is.
    /// @return the length of `in`
    static float normalize(const float* in, float* out);
};

} // namespace qor
