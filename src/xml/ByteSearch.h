#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace qor
{

/// Eight bytes of a text at once, the first one lowest. The tests mark bytes by their highest bit.
/// They are exact up to and including the first byte that they mark, which is all that is asked of
/// them.
class ByteWord
{
public:
    static constexpr std::ptrdiff_t SIZE = 8;

    explicit ByteWord(const char* bytes)
    {
        std::memcpy(&m_Bytes, bytes, sizeof m_Bytes);
        m_Bytes = withFirstLowest(m_Bytes);
    }

    bool operator!=(const ByteWord& other) const { return m_Bytes != other.m_Bytes; }

    void store(char* target) const
    {
        const std::uint64_t bytes = withFirstLowest(m_Bytes);
        std::memcpy(target, &bytes, sizeof bytes);
    }

    /// Marks the bytes equal to `byte`, whatever their bits in `ignored`, which `byte` has set.
    std::uint64_t marksOf(char byte, unsigned char ignored = 0) const
    {
        const std::uint64_t difference =
            (m_Bytes | repeated(ignored)) ^ repeated(static_cast<unsigned char>(byte));
        return (difference - LOWEST_BITS) & ~difference & HIGHEST_BITS;
    }

    /// How many bytes stand in front of the first one marked; there is one.
    static std::ptrdiff_t firstOf(std::uint64_t marks)
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

    static constexpr std::uint64_t repeated(unsigned char byte)
    {
        return LOWEST_BITS * byte;
    }

    /// Turns a word around where the byte that comes first in memory is the highest one.
    static std::uint64_t withFirstLowest(std::uint64_t bytes)
    {
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
        return __builtin_bswap64(bytes);
#else
        return bytes;
#endif
    }

    std::uint64_t m_Bytes;
};

/// The first byte of that value in a range, or the range's end. Made for the short distances
/// between the marks of a document, where a call of std::memchr costs more than the search.
inline const char* findByte(const char* begin, const char* end, char byte)
{
    constexpr int SHORT_DISTANCE = 4;
    for (int words = 0; end - begin >= ByteWord::SIZE; ++words) {
        if (words == SHORT_DISTANCE) {
            const void* const found =
                std::memchr(begin, byte, static_cast<std::size_t>(end - begin));
            return found ? static_cast<const char*>(found) : end;
        }
        const std::uint64_t marks = ByteWord(begin).marksOf(byte);
        if (marks != 0) {
            return begin + ByteWord::firstOf(marks);
        }
        begin += ByteWord::SIZE;
    }
    while (begin != end && *begin != byte) {
        ++begin;
    }
    return begin;
}

/// The first byte of either value in a range, or the range's end.
inline const char* findEither(const char* begin, const char* end, char one, char other)
{
    while (end - begin >= ByteWord::SIZE) {
        const ByteWord word(begin);
        const std::uint64_t marks = word.marksOf(one) | word.marksOf(other);
        if (marks != 0) {
            return begin + ByteWord::firstOf(marks);
        }
        begin += ByteWord::SIZE;
    }
    while (begin != end && *begin != one && *begin != other) {
        ++begin;
    }
    return begin;
}

} // namespace qor
