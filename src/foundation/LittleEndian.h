// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <cstring>

namespace qor
{

/// Converts a word from native to little endian, or back.
inline std::uint32_t toLittleEndian(std::uint32_t word) noexcept
{
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    return __builtin_bswap32(word);
#else
    return word;
#endif
}

/// Loads a little-endian word from an address of any alignment.
inline std::uint32_t loadWord(const unsigned char* bytes) noexcept
{
    std::uint32_t word;
    std::memcpy(&word, bytes, sizeof word);
    return toLittleEndian(word);
}

/// Stores a little-endian word at an address of any alignment.
inline void storeWord(unsigned char* bytes, std::uint32_t word) noexcept
{
    word = toLittleEndian(word);
    std::memcpy(bytes, &word, sizeof word);
}

} // namespace qor
