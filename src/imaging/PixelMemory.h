// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace qor
{

/// Returns the number of pixels of an image; 0 if a size is not positive.
std::uint64_t countPixels(int width, int height) noexcept;

/// Allocates memory with undefined content for the pixels of an image, to be released by
/// `std::free`.
/// @return the pixels; null if there are none
/// @throws std::bad_alloc if the memory is not available or its size cannot be represented
std::uint32_t* allocatePixels(int width, int height);

/// Allocates memory for the pixels of an image, all 0, to be released by `std::free`. Pages of a
/// large image that are never written take no memory.
/// @return the pixels; null if there are none or the memory is not available
std::uint32_t* allocateZeroedPixels(int width, int height) noexcept;

} // namespace qor
