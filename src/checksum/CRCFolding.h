#pragma once

#include <cstddef>
#include <cstdint>

namespace qor
{

/// One step of an empty CRC register. It is a multiplication by x: the highest bit stands for the
/// lowest power.
constexpr std::uint32_t timesX(std::uint32_t value)
{
    constexpr std::uint32_t POLYNOMIAL = 0xEDB88320;
    return (value >> 1) ^ ((value & 1) != 0 ? POLYNOMIAL : 0);
}

/// Folding replaces data by few bytes that leave the same in a CRC register. It takes a processor
/// that multiplies polynomials, and then a small part of the time of going byte by byte. One of two
/// files implements it: CRCFolding.cpp, or NoCRCFolding.cpp for machines without it.
class CRCFolding
{
public:
    static constexpr std::size_t LEAST_SIZE = 64;
    static constexpr std::size_t FOLDED_SIZE = 16;

    /// Whether this processor can fold.
    static bool isAvailable();

    /// Takes in as much of the data as fits.
    /// @param value the register in front of the data
    /// @param data,size LEAST_SIZE bytes or more
    /// @param folded bytes that leave in an empty register what was taken in leaves in `value`
    /// @return how many bytes were not taken in, from the end of the data
    static std::size_t fold(std::uint32_t value, const unsigned char* data, std::size_t size,
                            unsigned char (&folded)[FOLDED_SIZE]);
};

} // namespace qor
