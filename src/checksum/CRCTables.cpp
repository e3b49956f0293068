// SPDX-License-Identifier: MIT
#include "checksum/CRCTables.h"

#include "foundation/LittleEndian.h"

namespace qor
{

namespace
{

constexpr std::size_t SLICE_COUNT = 16;

/// The tables of slicing-by-16 (after M. Kounavis and F. Berry, "A Systematic Approach to Building
/// High Performance Software-based CRC Generators", 2005). Table n maps a byte to the register
/// after this byte and n zero bytes.
class CRCTables
{
public:
    constexpr CRCTables() : m_Words()
    {
        for (std::uint32_t byte = 0; byte < 256; ++byte) {
            std::uint32_t word = byte;
            for (int bit = 0; bit < 8; ++bit) {
                word = multiplyByX(word);
            }
            m_Words[0][byte] = word;
        }
        for (std::size_t table = 1; table < SLICE_COUNT; ++table) {
            for (std::size_t byte = 0; byte < 256; ++byte) {
                const std::uint32_t word = m_Words[table - 1][byte];
                m_Words[table][byte] = (word >> 8) ^ m_Words[0][word & 0xFF];
            }
        }
    }

    std::uint32_t get(std::size_t table, std::uint32_t byte) const
    {
        return m_Words[table][byte & 0xFF];
    }

private:
    std::uint32_t m_Words[SLICE_COUNT][256];
};

constexpr CRCTables TABLES;

/// Adds SIZE bytes, a multiple of 4. Unlike those of a loop over bytes, the look-ups are
/// independent of each other.
template<std::size_t SIZE>
std::uint32_t addSlices(std::uint32_t value, const unsigned char* data)
{
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < SIZE; i += sizeof value) {
        // The register is combined with the first four bytes.
        const std::uint32_t word = loadWord(data + i) ^ (i == 0 ? value : 0);
        const std::size_t table = SIZE - 1 - i;
        sum ^= TABLES.get(table, word) ^ TABLES.get(table - 1, word >> 8) ^
               TABLES.get(table - 2, word >> 16) ^ TABLES.get(table - 3, word >> 24);
    }
    return sum;
}

} // namespace

std::uint32_t addBytesByTables(std::uint32_t value, const unsigned char* data, std::size_t size)
{
    for (; size >= SLICE_COUNT; data += SLICE_COUNT, size -= SLICE_COUNT) {
        value = addSlices<SLICE_COUNT>(value, data);
    }
    for (; size >= sizeof value; data += sizeof value, size -= sizeof value) {
        value = addSlices<sizeof value>(value, data);
    }
    for (; size > 0; --size) {
        value = (value >> 8) ^ TABLES.get(0, value ^ *data++);
    }
    return value;
}

} // namespace qor
