// SPDX-License-Identifier: MIT
#include "qor/Vector.h"

#include <cmath>

namespace qor
{

float Vector::length(const float* in)
{
    return std::sqrt(dot(in, in));
}

void Vector::multiply(const float* a, const float* b, float* out)
{
    for (int i = 0; i < 3; ++i) {
        out[i] = a[i] * b[i];
    }
}

void Vector::multiply(const float* in, float factor, float* out)
{
    for (int i = 0; i < 3; ++i) {
        out[i] = in[i] * factor;
    }
}

void Vector::cross(const float* a, const float* b, float* out)
{
    store(a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0], out);
}

float Vector::dot(const float* a, const float* b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

float Vector::normalize(const float* in, float* out)
{
    const float magnitude = length(in);
    if (magnitude > 0.0f) {
        for (int i = 0; i < 3; ++i) {
            out[i] = in[i] / magnitude;
        }
    }
    return magnitude;
}

} // namespace qor
