// SPDX-License-Identifier: MIT
#include "qor/Color.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "qor/Vector.h"

namespace qor
{

namespace
{

constexpr int CHANNELS = 3; ///< without alpha
constexpr int ALPHA = 3;

/// Returns the bits of a channel times 255, truncated to a signed 32-bit integer. Values out of
/// range saturate, and NaN gives 0.
std::uint32_t toLevel(float channel)
{
    constexpr float LIMIT = 2147483648.0f; // 2^31, the smallest float above the 32-bit integers
    const float level = channel * 255.0f;
    if (std::isnan(level)) {
        return 0;
    }
    if (level >= LIMIT) {
        return std::numeric_limits<std::int32_t>::max();
    }
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(std::max(level, -LIMIT)));
}

} // namespace

void Color::copy(const float* in, float* out)
{
    std::memmove(out, in, (CHANNELS + 1) * sizeof(float));
}

void Color::add(const float* a, const float* b, float* out)
{
    Vector::add(a, b, out);
}

void Color::subtract(const float* a, const float* b, float* out)
{
    Vector::subtract(a, b, out);
}

void Color::multiply(const float* a, const float* b, float* out)
{
    Vector::multiply(a, b, out);
}

void Color::multiply(const float* in, float factor, float* out)
{
    Vector::multiply(in, factor, out);
}

void Color::clip(const float* in, float low, float high, float* out)
{
    for (int i = 0; i < CHANNELS; ++i) {
        if (in[i] > high) {
            out[i] = high;
        } else {
            out[i] = in[i] < low ? low : in[i];
        }
    }
}

void Color::normalize(const float* in, float* out)
{
    float maximum = 0.0f;
    for (int i = 0; i < CHANNELS; ++i) {
        maximum = in[i] > maximum ? in[i] : maximum;
    }
    for (int i = 0; i < CHANNELS; ++i) {
        out[i] = in[i] > 0.0f ? in[i] / maximum : 0.0f;
    }
    // These comparisons keep NaN; std::min and std::max would depend on the order of arguments.
    const float alpha = in[ALPHA] > 1.0f ? 1.0f : in[ALPHA];
    out[ALPHA] = alpha < 0.0f ? 0.0f : alpha;
}

std::uint32_t Color::rgba(const float* in)
{
    return toLevel(in[ALPHA]) << 24 | toLevel(in[0]) << 16 | toLevel(in[1]) << 8 | toLevel(in[2]);
}

} // namespace qor
