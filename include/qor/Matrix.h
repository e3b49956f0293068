// SPDX-License-Identifier: MIT
#pragma once

#include "qor/Export.h"

namespace qor
{

/// Operations on 4 by 4 matrices, stored as arrays of 16 floats row by row: elements 0 to 3 are the
/// first row, 12 to 15 the last.
///
/// Vectors are columns, multiplied from the right, so elements 3, 7 and 11 hold the translation.
/// Angles are in radians. A positive angle about an axis that points at the viewer rotates
/// counterclockwise; about +z it rotates from +x towards +y.
///
/// All operations are static and take constant time.
///
/// **Ownership**: the caller owns all arrays. No array is null. A result array may be the same as
/// an input array.
///
/// **Error handling**: no operation fails or throws. NaN, infinities and overflow follow IEEE 754.
/// Each sum and product is rounded, without fused operations, in the order documented here. Results
/// are thus the same on all systems.
///
/// **Thread safety**: operations on different arrays may run in different threads at the same time.
///
/// @code
/// const float position[3] = {0.0f, 0.0f, -5.0f}, corner[3] = {1.0f, 0.0f, 0.0f};
/// float turn[16], move[16], place[16], point[3];
/// qor::Matrix::makeRotateZ(0.5f, turn);
/// qor::Matrix::makeTranslate(position, move);
/// qor::Matrix::multiply(move, turn, place); // turns first, then moves
/// qor::Matrix::multiplyV(place, corner, point);
/// @endcode
class QORTK_API Matrix
{
public:
    /// Copies a matrix.
    /// @param in matrix to copy
    /// @param[out] out the copy
    static void copy(const float* in, float* out);

    /// Adds two matrices element by element.
    /// @param a first matrix
    /// @param b second matrix
    /// @param[out] out the sum
    static void add(const float* a, const float* b, float* out);

    /// Multiplies two matrices. The product applies `b` first, then `a`. Each element is the sum of
    /// 0 and the four products of a row of `a` and a column of `b`, added in the order of the row.
    /// @param a first matrix
    /// @param b second matrix
    /// @param[out] out the product `a` · `b`
    static void multiply(const float* a, const float* b, float* out);

    /// Transforms a point. Multiplies `m` by the column (x, y, z, 1). Then multiplies x, y and z of
    /// the product by the reciprocal of its fourth element. If that is 0, the results are infinite
    /// or NaN.
    /// @param m matrix
    /// @param v point of three floats
    /// @param[out] out the transformed point, three floats
    static void multiplyV(const float* m, const float* v, float* out);

    /// Transposes a matrix.
    /// @param in matrix
    /// @param[out] out the transpose of `in`
    static void transpose(const float* in, float* out);

    /// Makes the identity matrix.
    /// @param[out] out the matrix
    static void identity(float* out);

    /// Makes a rotation about a coordinate axis.
    /// @param angle radians
    /// @param[out] out the matrix
    /// @{
    static void makeRotateX(float angle, float* out);
    static void makeRotateY(float angle, float* out);
    static void makeRotateZ(float angle, float* out);
    /// @}

    /// Makes a rotation about any axis through the origin.
    /// @param axis unit vector of three floats. For another length, the result is not a rotation.
    /// @param angle radians
    /// @param[out] out the matrix
    static void makeRotate(const float* axis, float angle, float* out);

    /// Makes a translation.
    /// @param v vector of three floats
    /// @param[out] out the matrix
    static void makeTranslate(const float* v, float* out);
};

} // namespace qor
