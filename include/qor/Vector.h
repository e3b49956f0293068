// SPDX-License-Identifier: MIT
#pragma once

#include <cstring>

#include "qor/Export.h"

namespace qor
{

/// Operations on vectors of three floats: x, y, z.
///
/// All operations are static and take constant time.
///
/// **Ownership**: the caller owns all arrays. Every array has three elements and is not null. A
/// result array may be the same as an input array.
///
/// **Error handling**: no operation fails or throws. NaN, infinities and overflow follow IEEE 754.
/// Each sum and product is rounded, without fused operations, in the order documented here.
///
/// **Thread safety**: operations on different arrays may run in different threads at the same time.
///
/// @note copy(), add(), subtract() and inverse() are inline and use the compiler options of the
/// host. Options such as `-ffast-math` can change their results. With `-ffp-contract=fast` the
/// compiler may fuse a sum with a product that the host computes. The options of the host do not
/// affect the other operations.
///
/// @code
/// const float velocity[3] = {3.0f, 0.0f, 4.0f};
/// float direction[3] = {1.0f, 0.0f, 0.0f};
/// const float speed = qor::Vector::normalize(velocity, direction); // 5, and (0.6, 0, 0.8)
/// @endcode
class QORTK_API Vector
{
public:
    /// Copies a vector.
    /// @param in vector to copy
    /// @param[out] out the copy
    QORTK_API_INLINE static void copy(const float* in, float* out)
    {
        std::memmove(out, in, 3 * sizeof *out);
    }

    /// Returns the length of a vector.
    /// @param in vector
    /// @return the square root of x² + y² + z²
    static float length(const float* in);

    /// Adds two vectors.
    /// @param a first vector
    /// @param b second vector
    /// @param[out] out the sum
    QORTK_API_INLINE static void add(const float* a, const float* b, float* out)
    {
        store(a[0] + b[0], a[1] + b[1], a[2] + b[2], out);
    }

    /// Subtracts two vectors.
    /// @param a first vector
    /// @param b second vector
    /// @param[out] out the difference `a` - `b`
    QORTK_API_INLINE static void subtract(const float* a, const float* b, float* out)
    {
        store(a[0] - b[0], a[1] - b[1], a[2] - b[2], out);
    }

    /// Multiplies two vectors element by element.
    /// @param a first vector
    /// @param b second vector
    /// @param[out] out the products
    static void multiply(const float* a, const float* b, float* out);

    /// Multiplies a vector by a factor.
    /// @param in vector
    /// @param factor any number
    /// @param[out] out the products
    static void multiply(const float* in, float factor, float* out);

    /// Negates all elements.
    /// @param in vector
    /// @param[out] out the vector of the opposite direction
    QORTK_API_INLINE static void inverse(const float* in, float* out)
    {
        store(-in[0], -in[1], -in[2], out);
    }

    /// Computes the cross product (a₁b₂ - a₂b₁, a₂b₀ - a₀b₂, a₀b₁ - a₁b₀).
    /// @param a first vector
    /// @param b second vector
    /// @param[out] out the cross product
    static void cross(const float* a, const float* b, float* out);

    /// Returns the dot product of two vectors.
    /// @param a first vector
    /// @param b second vector
    /// @return a₀b₀ + a₁b₁ + a₂b₂
    static float dot(const float* a, const float* b);

    /// Divides a vector by its length.
    /// @param in vector
    /// @param[out] out the unit vector; unchanged if the length is 0 or NaN
    /// @return the length of `in`
    static float normalize(const float* in, float* out);

private:
    /// Stores three elements. They are parameters, so that they are computed before `out`, which
    /// may be the same as an input, changes.
    static void store(float x, float y, float z, float* out)
    {
        out[0] = x;
        out[1] = y;
        out[2] = z;
    }
};

} // namespace qor
