// SPDX-License-Identifier: MIT
#include "qor/MD5.h"

#include <algorithm>
#include <cstring>

#include "foundation/LittleEndian.h"

namespace qor
{

namespace
{

/// Offset of the length of the data in the last block.
constexpr unsigned int LENGTH_OFFSET = 56;

std::uint32_t rotateLeft(std::uint32_t word, int bits)
{
    return word << bits | word >> (32 - bits);
}

// The functions F, G, H and I of RFC 1321, each added to `a`. They are written so that few
// operations depend on b, the result of the previous step. The two terms of G share no bit, so they
// can be added one after the other instead of combined by "or".

struct MixF {
    static void add(std::uint32_t& a, std::uint32_t b, std::uint32_t c, std::uint32_t d)
    {
        a += ((c ^ d) & b) ^ d;
    }
};

struct MixG {
    static void add(std::uint32_t& a, std::uint32_t b, std::uint32_t c, std::uint32_t d)
    {
        a += c & ~d;
        a += b & d;
    }
};

struct MixH {
    static void add(std::uint32_t& a, std::uint32_t b, std::uint32_t c, std::uint32_t d)
    {
        a += b ^ (c ^ d);
    }
};

struct MixI {
    static void add(std::uint32_t& a, std::uint32_t b, std::uint32_t c, std::uint32_t d)
    {
        a += c ^ (b | ~d);
    }
};

/// The constants of RFC 1321: the integer parts of 2^32 * |sin(i)| for i from 1 to 64.
constexpr std::uint32_t SINES[64] = {
    0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501,
    0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be, 0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821,
    0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa, 0xd62f105d, 0x02441453, 0xd8a1e681, 0xe7d3fbc8,
    0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed, 0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a,
    0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c, 0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70,
    0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05, 0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665,
    0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1,
    0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391};

/// Runs one round: 16 steps on the words FIRST, FIRST + STRIDE and so on of the block, modulo 16,
/// with the rotations R0 to R3 in turn.
template<typename TMix, unsigned int ROUND, unsigned int FIRST, unsigned int STRIDE, int R0, int R1,
         int R2, int R3>
void runRound(std::uint32_t (&state)[4], const unsigned char* block)
{
    auto [a, b, c, d] = state;
    const auto step = [block](std::uint32_t& first, std::uint32_t second, std::uint32_t third,
                              std::uint32_t fourth, unsigned int number, int rotation) {
        first += SINES[16 * ROUND + number] +
                 loadWord(block + (FIRST + STRIDE * number) % 16 * sizeof first);
        TMix::add(first, second, third, fourth);
        first = rotateLeft(first, rotation) + second;
    };
    for (unsigned int i = 0; i < 16; i += 4) {
        step(a, b, c, d, i, R0);
        step(d, a, b, c, i + 1, R1);
        step(c, d, a, b, i + 2, R2);
        step(b, c, d, a, i + 3, R3);
    }
    state[0] = a;
    state[1] = b;
    state[2] = c;
    state[3] = d;
}

} // namespace

MD5::MD5() : m_Block()
{
    MD5::reset();
}

MD5::~MD5() = default;

void MD5::addRaw(const unsigned char* data, unsigned int length)
{
    if (length == 0) {
        return;
    }
    const std::uint32_t oldBits = m_BitCount[0];
    m_BitCount[0] += length << 3;
    m_BitCount[1] += (length >> 29) + (m_BitCount[0] < oldBits ? 1 : 0);

    // The number of bytes that m_Block holds, modulo its size.
    const unsigned int buffered = oldBits >> 3 & (BLOCK_SIZE - 1);
    if (buffered > 0) {
        const unsigned int size = std::min(length, BLOCK_SIZE - buffered);
        std::memcpy(blockBytes() + buffered, data, size);
        if (buffered + size < BLOCK_SIZE) {
            return;
        }
        MD5Transform(m_Block);
        data += size;
        length -= size;
    }
    for (; length >= BLOCK_SIZE; length -= BLOCK_SIZE) {
        std::memcpy(m_Block, data, BLOCK_SIZE);
        MD5Transform(m_Block);
        data += BLOCK_SIZE;
    }
    std::memcpy(m_Block, data, length);
}

void MD5::finalize()
{
    unsigned char* const bytes = blockBytes();
    unsigned int size = m_BitCount[0] >> 3 & (BLOCK_SIZE - 1);
    bytes[size++] = 0x80;
    if (size > LENGTH_OFFSET) {
        std::memset(bytes + size, 0, BLOCK_SIZE - size);
        MD5Transform(m_Block);
        size = 0;
    }
    std::memset(bytes + size, 0, LENGTH_OFFSET - size);
    storeWord(bytes + LENGTH_OFFSET, m_BitCount[0]);
    storeWord(bytes + LENGTH_OFFSET + 4, m_BitCount[1]);
    MD5Transform(m_Block);
}

unsigned int MD5::getChecksumLength()
{
    return sizeof m_State;
}

void MD5::getChecksumRaw(unsigned char* out)
{
    for (const std::uint32_t word : m_State) {
        storeWord(out, word);
        out += sizeof word;
    }
}

void MD5::reset()
{
    m_State[0] = 0x67452301;
    m_State[1] = 0xefcdab89;
    m_State[2] = 0x98badcfe;
    m_State[3] = 0x10325476;
    m_BitCount[0] = 0;
    m_BitCount[1] = 0;
}

unsigned char* MD5::blockBytes()
{
    return reinterpret_cast<unsigned char*>(m_Block);
}

/// Updates the state with a block of 16 little-endian words, as RFC 1321 describes.
void MD5::MD5Transform(const unsigned int* block)
{
    const unsigned char* const bytes = reinterpret_cast<const unsigned char*>(block);
    std::uint32_t state[4] = {m_State[0], m_State[1], m_State[2], m_State[3]};
    runRound<MixF, 0, 0, 1, 7, 12, 17, 22>(state, bytes);
    runRound<MixG, 1, 1, 5, 5, 9, 14, 20>(state, bytes);
    runRound<MixH, 2, 5, 3, 4, 11, 16, 23>(state, bytes);
    runRound<MixI, 3, 0, 7, 6, 10, 15, 21>(state, bytes);
    for (int i = 0; i < 4; ++i) {
        m_State[i] += state[i];
    }
}

} // namespace qor
