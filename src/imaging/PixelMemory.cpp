// SPDX-License-Identifier: MIT
#include "imaging/PixelMemory.h"

#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>

namespace qor
{

namespace
{

/// Returns whether the size of `count` pixels in bytes fits into std::size_t.
bool isAddressable(std::uint64_t count)
{
    return count <= std::numeric_limits<std::size_t>::max() / sizeof(std::uint32_t);
}

} // namespace

std::uint64_t countPixels(int width, int height) noexcept
{
    if (width < 1 || height < 1) {
        return 0;
    }
    return static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
}

std::uint32_t* allocatePixels(int width, int height)
{
    const std::uint64_t count = countPixels(width, height);
    if (count == 0) {
        return nullptr;
    }
    void* const pixels = isAddressable(count)
                             ? std::malloc(static_cast<std::size_t>(count) * sizeof(std::uint32_t))
                             : nullptr;
    if (!pixels) {
        throw std::bad_alloc();
    }
    return static_cast<std::uint32_t*>(pixels);
}

std::uint32_t* allocateZeroedPixels(int width, int height) noexcept
{
    const std::uint64_t count = countPixels(width, height);
    if (count == 0 || !isAddressable(count)) {
        return nullptr;
    }
    return static_cast<std::uint32_t*>(
        std::calloc(static_cast<std::size_t>(count), sizeof(std::uint32_t)));
}

} // namespace qor
