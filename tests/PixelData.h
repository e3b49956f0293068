// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

#include "qor/Image.h"

using Pixels = std::vector<std::uint32_t>;

/// The same numbers in each run, of 32 bits also where std::mt19937's are wider.
using Random = std::independent_bits_engine<std::mt19937, 32, std::uint32_t>;

inline qor::Image makeImage(unsigned long width, unsigned long height, const Pixels& pixels)
{
    qor::Image image(width, height);
    std::copy_n(pixels.begin(), width * height, image.getData());
    return image;
}

inline Pixels pixelsOf(const qor::Image& image)
{
    return Pixels(image.getData(), image.getData() + image.getWidth() * image.getHeight());
}
