#pragma once

#include <cstring>

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
/// Operations without products are inline, so that they are compiled with the host's options. They
/// give the same results as long as these follow IEEE 754: `-ffast-math` and the like do not, and
/// with `-ffp-contract=fast` a compiler may fuse a product of the host's own with the sum. All
/// other operations round as described whatever the host's options are.
///
/// @code
/// const float velocity[3] = {3.0f, 0.0f, 4.0f};
/// float direction[3] = {1.0f, 0.0f, 0.0f};
/// const float speed = qor::Vector::normalize(velocity, direction); // 5, and (0.6, 0, 0.8)
/// @endcode
class QORTK_API Vector
{
public:
    /// Copies all elements.
    static void copy(const float* in, float* out) { std::memmove(out, in, 3 * sizeof *out); }

    /// @return the square root of x² + y² + z²
    static float length(const float* in);

    /// Adds `a` + `b`.
    static void add(const float* a, const float* b, float* out)
    {
        store(a[0] + b[0], a[1] + b[1], a[2] + b[2], out);
    }

    /// Subtracts `a` - `b`.
    static void subtract(const float* a, const float* b, float* out)
    {
        store(a[0] - b[0], a[1] - b[1], a[2] - b[2], out);
    }

    /// The products of elements.
    static void multiply(const float* a, const float* b, float* out);

    /// Each element times `factor`.
    static void multiply(const float* in, float factor, float* out);

    /// Negates all elements.
    static void inverse(const float* in, float* out) { store(-in[0], -in[1], -in[2], out); }

    /// The cross product: (a₁b₂ - a₂b₁, a₂b₀ - a₀b₂, a₀b₁ - a₁b₀).
    static void cross(const float* a, const float* b, float* out);

    /// @return the dot product a₀b₀ + a₁b₁ + a₂b₂
    static float dot(const float* a, const float* b);

    /// Divides by the length. Where that is 0 or not a number, `out` stays as it is.
    /// @return the length of `in`
    static float normalize(const float* in, float* out);

private:
    /// The arguments are read before `out` changes.
    static void store(float x, float y, float z, float* out)
    {
        out[0] = x;
        out[1] = y;
        out[2] = z;
    }
};

} // namespace qor
