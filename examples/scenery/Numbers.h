// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>

#include "shared/Drawing.h"

/// Arithmetic that gives the same bits on every system: the C library's mathematics is used only
/// where its results are exact.

/// Returns the pixel with its light multiplied by an amount from 0 to 256.
inline Pixel dim(Pixel pixel, unsigned int amount)
{
    return blend(0, pixel, amount);
}

/// Returns `a` for the amount 0 and `b` for 1.
inline float mix(float a, float b, float amount)
{
    return a + (b - a) * amount;
}

/// Returns the part of a number after the point, from 0 up to below 1.
inline float fraction(float number)
{
    return number - std::floor(number);
}

/// Returns the sine of an angle in turns: a parabola, corrected once; the error is below 0.002.
inline float sine(float turns)
{
    const float x = fraction(turns + 0.5f) - 0.5f;
    const float y = 8.0f * x - 16.0f * x * std::fabs(x);
    return y + 0.225f * (y * std::fabs(y) - y);
}

/// Returns a number from 0 up to below 1 that depends on the seed alone.
inline float noise(unsigned int seed)
{
    // The finalizer of MurmurHash3.
    seed = (seed ^ seed >> 16) * 0x85EBCA6Bu;
    seed = (seed ^ seed >> 13) * 0xC2B2AE35u;
    return toFloat((seed ^ seed >> 16) >> 8) / 16777216.0f;
}
