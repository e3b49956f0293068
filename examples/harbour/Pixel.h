// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <cstdint>

/// Arithmetic that gives the same bits on every system: the C library's mathematics is used only
/// where its results are exact.

using Pixel = std::uint32_t;

/// Conversions of numbers, without the digits after the point.
/// @{
template<class TNumber>
float toFloat(TNumber number)
{
    return static_cast<float>(number);
}
template<class TNumber>
int toInt(TNumber number)
{
    return static_cast<int>(number);
}
template<class TNumber>
unsigned int toUnsigned(TNumber number)
{
    return static_cast<unsigned int>(number);
}
/// @}

/// Returns a mixture of two pixels; amounts reach from 0 (`under`) to 256 (`over`).
inline Pixel blend(Pixel under, Pixel over, unsigned int amount)
{
    constexpr Pixel OPAQUE = 0xFF000000, RED_BLUE = 0x00FF00FF, GREEN = 0x0000FF00;
    const Pixel redBlue = (under & RED_BLUE) * (256 - amount) + (over & RED_BLUE) * amount;
    const Pixel green = (under & GREEN) * (256 - amount) + (over & GREEN) * amount;
    return OPAQUE | (redBlue >> 8 & RED_BLUE) | (green >> 8 & GREEN);
}

/// Returns the pixel with its light multiplied by an amount from 0 to 256.
inline Pixel dim(Pixel pixel, unsigned int amount)
{
    return blend(0, pixel, amount);
}

/// Returns the result of a function of each channel of two pixels.
template<class TFunction>
Pixel forChannels(Pixel a, Pixel b, TFunction function)
{
    return function(a >> 16 & 255, b >> 16 & 255) << 16 |
           function(a >> 8 & 255, b >> 8 & 255) << 8 | function(a & 255, b & 255);
}

/// Returns the sum of two lights, each channel limited to 255. A channel has room for a carry in its
/// word, and a carry minus its own lowest bit is 255.
inline Pixel addLight(Pixel a, Pixel b)
{
    constexpr Pixel RED_BLUE = 0x00FF00FF, CARRIES = 0x01000100;
    Pixel redBlue = (a & RED_BLUE) + (b & RED_BLUE);
    Pixel green = (a >> 8 & RED_BLUE) + (b >> 8 & RED_BLUE);
    redBlue |= (redBlue & CARRIES) - ((redBlue & CARRIES) >> 8);
    green |= (green & CARRIES) - ((green & CARRIES) >> 8);
    return (redBlue & RED_BLUE) | (green & RED_BLUE) << 8;
}

/// Returns a pixel under a colored light.
inline Pixel illuminate(Pixel pixel, Pixel light)
{
    return forChannels(pixel, light, [](Pixel x, Pixel y) { return x * (y + 1) >> 8; });
}

/// Returns a mixture of two pixels for a share from 0 to 1. Channels are rounded up or down by the
/// place of the pixel (ordered dithering): the steps of a faint gradient would be visible.
inline Pixel dither(Pixel under, Pixel over, float share, int x, int y)
{
    constexpr Pixel BAYER[16] = {0, 8, 2, 10, 12, 4, 14, 6, 3, 11, 1, 9, 15, 7, 13, 5};
    const Pixel offset = BAYER[(y & 3) * 4 + (x & 3)] * 256;
    const auto amount = toUnsigned(share * 4096.0f);
    return forChannels(under, over, [=](Pixel a, Pixel b) {
        return (a * (4096 - amount) + b * amount + offset) >> 12;
    });
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
