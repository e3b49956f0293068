#pragma once

#include "qor/Export.h"

namespace qor
{

/// Operations on matrices of 16 floats: elements 0 to 3 are the first row, 12 to 15 the last.
///
/// Vectors are columns, multiplied from the right, so a translation stands in elements 3, 7 and 11.
/// Angles are in radians; a positive angle about an axis that points at the viewer turns
/// counterclockwise, about +z from +x towards +y.
///
/// All operations are static. The caller owns all arrays; the result array comes last and may be
/// the same as one of the inputs. Objects of this class hold nothing, and assigning one does
/// nothing. Not-a-number, infinities and overflow follow the rules of IEEE 754; sums and products
/// are rounded one by one, in the order in which they are written here.
///
/// Operations on different arrays may run in several threads at once.
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
    /// All elements of `in`.
    static void copy(const float* in, float* out);

    /// The sums of elements.
    static void add(const float* a, const float* b, float* out);

    /// The matrix product `a` · `b`, which acts as `b` first and then as `a`. Each element is
    /// summed from 0, along the row of `a` from left to right.
    static void multiply(const float* a, const float* b, float* out);

    /// Transforms a point of three floats: `m` times (x, y, z, 1), times the reciprocal of the
    /// fourth element, which is not tested for 0.
    static void multiplyV(const float* m, const float* v, float* out);

    /// Rows become columns.
    static void transpose(const float* in, float* out);

    /// The matrix that changes nothing.
    static void identity(float* out);

    /// Rotations by `angle` radians about a coordinate axis.
    /// @{
    static void makeRotateX(float angle, float* out);
    static void makeRotateY(float angle, float* out);
    static void makeRotateZ(float angle, float* out);
    /// @}

    /// Rotation by `angle` radians.
    /// @param axis unit vector of three floats; no other length gives a pure rotation
    /// @param angle radians
    /// @param out the matrix
    static void makeRotate(const float* axis, float angle, float* out);

    /// Translation by the vector `v` of three floats.
    static void makeTranslate(const float* v, float* out);
};

} // namespace qor
