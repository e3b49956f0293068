// SPDX-License-Identifier: MIT
#include "shared/Pixel.h"

TColor makeColor(Pixel pixel)
{
    TColor color = {{static_cast<float>(pixel >> 16 & 255), static_cast<float>(pixel >> 8 & 255),
                     static_cast<float>(pixel & 255), 1.0f}};
    qor::Color::multiply(color.c, 1.0f / 255.0f, color.c);
    return color;
}

Pixel toPixel(const TColor& color)
{
    TColor visible = color;
    qor::Color::clip(color.c, 0.0f, 1.0f, visible.c);
    return qor::Color::rgba(visible.c);
}

TColor mix(const TColor& a, const TColor& b, float amount)
{
    TColor mixed = b;
    qor::Color::subtract(b.c, a.c, mixed.c);
    qor::Color::multiply(mixed.c, amount, mixed.c);
    qor::Color::add(a.c, mixed.c, mixed.c);
    return mixed;
}

float noise(unsigned int seed)
{
    // The finalizer of MurmurHash3.
    seed = (seed ^ seed >> 16) * 0x85EBCA6Bu;
    seed = (seed ^ seed >> 13) * 0xC2B2AE35u;
    return static_cast<float>((seed ^ seed >> 16) >> 8) / 16777216.0f;
}

float smoothNoise(float x, unsigned int seed)
{
    float sum = 0.0f, weight = 0.5f;
    for (unsigned int octave = 0; octave < 4; ++octave) {
        const float t = fraction(x);
        const auto cell = static_cast<unsigned int>(static_cast<int>(std::floor(x)));
        const unsigned int key = cell * 7919u + seed + octave * 104729u;
        sum += weight * mix(noise(key), noise(key + 7919u), t * t * (3.0f - 2.0f * t));
        x *= 2.0f;
        weight *= 0.5f;
    }
    return sum;
}
