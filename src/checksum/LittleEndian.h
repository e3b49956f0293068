#pragma once

#include <cstdint>

namespace qor
{

// Numbers as bytes, least significant first, on every machine. Compilers make single loads and
// stores of these.

inline std::uint32_t loadWord(const unsigned char* bytes)
{
    return bytes[0] | static_cast<std::uint32_t>(bytes[1]) << 8 |
           static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

inline void storeWord(unsigned char* bytes, std::uint32_t word)
{
    for (int shift = 0; shift < 32; shift += 8) {
        *bytes++ = static_cast<unsigned char>(word >> shift);
    }
}

} // namespace qor
