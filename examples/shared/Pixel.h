// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <cstdint>

#include <qor/Color.h>

/// Arithmetic that gives the same bits on every system: no function of the C library's mathematics
/// except the exact ones.

using Pixel = std::uint32_t;

constexpr Pixel OPAQUE = 0xFF000000;
constexpr Pixel RED_BLUE = 0x00FF00FF;
constexpr Pixel GREEN = 0x0000FF00;

/// A color of four floats, as qor::Color takes it.
struct TColor {
    float c[4];
};

TColor makeColor(Pixel pixel);
Pixel toPixel(const TColor& color);

/// Returns `a` for the amount 0 and `b` for 1.
/// @{
TColor mix(const TColor& a, const TColor& b, float amount);
inline float mix(float a, float b, float amount)
{
    return a + (b - a) * amount;
}
/// @}

/// Returns a share from 0 to 1 as an amount from 0 to 256.
inline unsigned int toAmount(float share)
{
    return static_cast<unsigned int>(share * 256.0f);
}

/// Returns a mixture of two pixels; amounts reach from 0 (`under`) to 256 (`over`).
inline Pixel blend(Pixel under, Pixel over, unsigned int amount)
{
    const Pixel redBlue = (under & RED_BLUE) * (256 - amount) + (over & RED_BLUE) * amount;
    const Pixel green = (under & GREEN) * (256 - amount) + (over & GREEN) * amount;
    return OPAQUE | (redBlue >> 8 & RED_BLUE) | (green >> 8 & GREEN);
}

/// Returns the pixel with its light multiplied by an amount from 0 to 256.
inline Pixel dim(Pixel pixel, unsigned int amount)
{
    return blend(0, pixel, amount);
}

/// Returns the sum of two lights, each channel limited to 255.
inline Pixel addLight(Pixel a, Pixel b)
{
    constexpr Pixel CARRIES = 0x01000100;
    Pixel redBlue = (a & RED_BLUE) + (b & RED_BLUE);
    Pixel green = ((a & GREEN) >> 8) + ((b & GREEN) >> 8);
    redBlue |= (redBlue & CARRIES) - ((redBlue & CARRIES) >> 8);
    green |= (green & CARRIES) - ((green & CARRIES) >> 8);
    return OPAQUE | (redBlue & RED_BLUE) | (green << 8 & GREEN);
}

/// Returns a pixel under a colored light, with the pixel's own alpha.
inline Pixel illuminate(Pixel pixel, Pixel light)
{
    const Pixel red = (pixel >> 16 & 255) * ((light >> 16 & 255) + 1) >> 8;
    const Pixel green = (pixel >> 8 & 255) * ((light >> 8 & 255) + 1) >> 8;
    const Pixel blue = (pixel & 255) * ((light & 255) + 1) >> 8;
    return (pixel & OPAQUE) | red << 16 | green << 8 | blue;
}

/// Returns an offset from 0 to 15 that hides the steps of a gradient (ordered dithering).
inline unsigned int getDither(int x, int y)
{
    constexpr unsigned char BAYER[16] = {0, 8, 2, 10, 12, 4, 14, 6, 3, 11, 1, 9, 15, 7, 13, 5};
    return BAYER[(y & 3) * 4 + (x & 3)];
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
float noise(unsigned int seed);

/// Returns noise that is smooth along `x`, with four octaves.
float smoothNoise(float x, unsigned int seed);
