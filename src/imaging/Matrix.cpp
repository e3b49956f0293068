// SPDX-License-Identifier: MIT
#include "qor/Matrix.h"

#include <cmath>
#include <cstring>

namespace qor
{

namespace
{

constexpr int ORDER = 4;
constexpr int ELEMENTS = ORDER * ORDER;

} // namespace

void Matrix::copy(const float* in, float* out)
{
    std::memmove(out, in, ELEMENTS * sizeof(float));
}

void Matrix::add(const float* a, const float* b, float* out)
{
    for (int i = 0; i < ELEMENTS; ++i) {
        out[i] = a[i] + b[i];
    }
}

void Matrix::multiply(const float* a, const float* b, float* out)
{
    // A local array cannot alias the inputs, so the compiler can vectorize the loop over columns.
    float product[ELEMENTS] = {};
    for (int row = 0; row < ELEMENTS; row += ORDER) {
        for (int k = 0; k < ORDER; ++k) {
            for (int column = 0; column < ORDER; ++column) {
                product[row + column] += a[row + k] * b[ORDER * k + column];
            }
        }
    }
    copy(product, out);
}

void Matrix::multiplyV(const float* m, const float* v, float* out)
{
    const float x = v[0], y = v[1], z = v[2];
    // The perspective division of homogeneous coordinates.
    const float w = m[12] * x + m[13] * y + m[14] * z + m[15];
    const float factor = 1.0f / w;
    const float outX = (m[0] * x + m[1] * y + m[2] * z + m[3]) * factor;
    const float outY = (m[4] * x + m[5] * y + m[6] * z + m[7]) * factor;
    const float outZ = (m[8] * x + m[9] * y + m[10] * z + m[11]) * factor;
    out[0] = outX;
    out[1] = outY;
    out[2] = outZ;
}

void Matrix::transpose(const float* in, float* out)
{
    float columns[ELEMENTS];
    for (int row = 0; row < ORDER; ++row) {
        for (int column = 0; column < ORDER; ++column) {
            columns[ORDER * row + column] = in[ORDER * column + row];
        }
    }
    copy(columns, out);
}

void Matrix::identity(float* out)
{
    for (int i = 0; i < ELEMENTS; ++i) {
        out[i] = i % (ORDER + 1) == 0 ? 1.0f : 0.0f;
    }
}

void Matrix::makeRotateX(float angle, float* out)
{
    const float c = std::cos(angle), s = std::sin(angle);
    identity(out);
    out[5] = c;
    out[6] = -s;
    out[9] = s;
    out[10] = c;
}

void Matrix::makeRotateY(float angle, float* out)
{
    const float c = std::cos(angle), s = std::sin(angle);
    identity(out);
    out[0] = c;
    out[2] = s;
    out[8] = -s;
    out[10] = c;
}

void Matrix::makeRotateZ(float angle, float* out)
{
    const float c = std::cos(angle), s = std::sin(angle);
    identity(out);
    out[0] = c;
    out[1] = -s;
    out[4] = s;
    out[5] = c;
}

void Matrix::makeRotate(const float* axis, float angle, float* out)
{
    // Rodrigues' rotation formula, for an axis of length 1.
    const float x = axis[0], y = axis[1], z = axis[2];
    const float c = std::cos(angle), s = std::sin(angle), t = 1.0f - c;
    const float rotation[ELEMENTS] = {
        x * x * t + c,
        x * y * t - z * s,
        x * z * t + y * s,
        0.0f,
        x * y * t + z * s,
        y * y * t + c,
        y * z * t - x * s,
        0.0f,
        x * z * t - y * s,
        y * z * t + x * s,
        z * z * t + c,
        0.0f,
        0.0f,
        0.0f,
        0.0f,
        1.0f,
    };
    copy(rotation, out);
}

void Matrix::makeTranslate(const float* v, float* out)
{
    const float x = v[0], y = v[1], z = v[2];
    identity(out);
    out[3] = x;
    out[7] = y;
    out[11] = z;
}

} // namespace qor
