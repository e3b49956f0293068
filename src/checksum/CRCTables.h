// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace qor
{

constexpr std::uint32_t POLYNOMIAL = 0xEDB88320; ///< reflected, without x^32

/// Multiplies a reflected polynomial by x, modulo POLYNOMIAL. The highest bit is the lowest power,
/// so this shifts right. A CRC register changes in the same way when one zero bit is added.
constexpr std::uint32_t multiplyByX(std::uint32_t value)
{
    return (value >> 1) ^ ((value & 1) != 0 ? POLYNOMIAL : 0);
}

/// Adds bytes to a CRC register with tables, on any processor.
/// @return the register after the bytes
std::uint32_t addBytesByTables(std::uint32_t value, const unsigned char* data, std::size_t size);

} // namespace qor
