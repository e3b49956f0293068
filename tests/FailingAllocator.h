// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

// Replaces the allocator of the program, so exactly one source file includes it. The forms for
// larger alignments are missing. The functions are not inlined, since compilers would otherwise
// report mismatched pairs.

constexpr long NEVER = -1;
inline std::atomic<long> liveBlocks = 0;
inline std::atomic<long> allocations = 0;
inline long allocationsLeft = NEVER; ///< until all fail

[[gnu::noinline]] void* operator new(std::size_t size)
{
    if (allocationsLeft == 0) {
        throw std::bad_alloc();
    }
    allocationsLeft -= allocationsLeft > 0 ? 1 : 0;
    void* const block = std::malloc(size);
    if (!block) {
        throw std::bad_alloc();
    }
    ++liveBlocks;
    ++allocations;
    return block;
}

[[gnu::noinline]] void operator delete(void* block) noexcept
{
    liveBlocks -= block ? 1 : 0;
    std::free(block);
}

[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept
{
    operator delete(block);
}

[[gnu::noinline]] void* operator new[](std::size_t size)
{
    return operator new(size);
}

[[gnu::noinline]] void operator delete[](void* block) noexcept
{
    operator delete(block);
}

[[gnu::noinline]] void operator delete[](void* block, std::size_t) noexcept
{
    operator delete(block);
}

[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
