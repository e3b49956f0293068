// SPDX-License-Identifier: MIT
#include "qor/Vector.h"

#include <cmath>

namespace qor
{

// Programs that were compiled with 1.0.0, where these functions were not inline, call them in the
// library. Compilers emit an inline function if its address is used.
using VectorFunction = void (*)(const float* in, float* out);
using VectorPairFunction = void (*)(const float* a, const float* b, float* out);
extern const VectorFunction EMITTED_FUNCTIONS[];
extern const VectorPairFunction EMITTED_PAIR_FUNCTIONS[];
const VectorFunction EMITTED_FUNCTIONS[] = {Vector::copy, Vector::inverse};
const VectorPairFunction EMITTED_PAIR_FUNCTIONS[] = {Vector::add, Vector::subtract};

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
