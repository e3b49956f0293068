// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace qor
{

/// Eight bytes of a text as one little-endian word, for SWAR searches. A mask has the highest bit
/// of each matching byte. Masks come from the SWAR zero-byte test `(x - 0x01..) & ~x & 0x80..`
/// (A. Mycroft, 1987). Its borrows run from a match to later bytes, so a mask may have wrong bits
/// after the first match, but none before it.
class ByteWord
{
public:
    static constexpr std::ptrdiff_t SIZE = 8;

    explicit ByteWord(const char* bytes)
    {
        std::memcpy(&m_Bytes, bytes, sizeof m_Bytes);
        m_Bytes = toLittleEndian(m_Bytes);
    }

    bool operator!=(const ByteWord& other) const { return m_Bytes != other.m_Bytes; }

    void store(char* target) const
    {
        const std::uint64_t bytes = toLittleEndian(m_Bytes);
        std::memcpy(target, &bytes, sizeof bytes);
    }

    /// Returns the mask of the bytes that equal `byte` except for the bits in `ignored`. `byte`
    /// must have all of these bits.
    std::uint64_t matchMask(char byte, unsigned char ignored = 0) const
    {
        const std::uint64_t difference =
            (m_Bytes | broadcast(ignored)) ^ broadcast(static_cast<unsigned char>(byte));
        return (difference - LOWEST_BITS) & ~difference & HIGHEST_BITS;
    }

    /// Returns the index of the first byte in a mask that is not 0.
    static std::ptrdiff_t firstIndex(std::uint64_t marks)
    {
#if defined(__GNUC__)
        return __builtin_ctzll(marks) / 8;
#else
        std::ptrdiff_t count = 0;
        for (; (marks & 0xFF) == 0; marks >>= 8) {
            ++count;
        }
        return count;
#endif
    }

private:
    static constexpr std::uint64_t LOWEST_BITS = 0x0101010101010101;
    static constexpr std::uint64_t HIGHEST_BITS = 0x8080808080808080;

    static constexpr std::uint64_t broadcast(unsigned char byte)
    {
        return LOWEST_BITS * byte;
    }

    /// Reverses the bytes on big-endian systems.
    static std::uint64_t toLittleEndian(std::uint64_t bytes)
    {
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
        return __builtin_bswap64(bytes);
#else
        return bytes;
#endif
    }

    std::uint64_t m_Bytes;
};

/// Finds the first occurrence of a byte. Short texts, as between two tags, are searched here faster
/// than by a call of std::memchr.
/// @return `end` if the byte does not occur
inline const char* findByte(const char* begin, const char* end, char byte)
{
    constexpr int MAX_WORDS = 4;
    for (int words = 0; end - begin >= ByteWord::SIZE; ++words) {
        if (words == MAX_WORDS) {
            const void* const found =
                std::memchr(begin, byte, static_cast<std::size_t>(end - begin));
            return found ? static_cast<const char*>(found) : end;
        }
        const std::uint64_t marks = ByteWord(begin).matchMask(byte);
        if (marks != 0) {
            return begin + ByteWord::firstIndex(marks);
        }
        begin += ByteWord::SIZE;
    }
    while (begin != end && *begin != byte) {
        ++begin;
    }
    return begin;
}

/// Finds the first occurrence of either byte.
/// @return `end` if neither occurs
inline const char* findFirstOf(const char* begin, const char* end, char one, char other)
{
    while (end - begin >= ByteWord::SIZE) {
        const ByteWord word(begin);
        const std::uint64_t marks = word.matchMask(one) | word.matchMask(other);
        if (marks != 0) {
            return begin + ByteWord::firstIndex(marks);
        }
        begin += ByteWord::SIZE;
    }
    while (begin != end && *begin != one && *begin != other) {
        ++begin;
    }
    return begin;
}

} // namespace qor
