#include "qor/CRC32.h"

#include <cstddef>
#include <initializer_list>

#include "checksum/LittleEndian.h"

namespace qor
{

namespace
{

/// What each byte makes of an empty register.
class CRCTable
{
public:
    constexpr CRCTable() : m_Words()
    {
        for (std::uint32_t byte = 0; byte < 256; ++byte) {
            std::uint32_t word = byte;
            for (int bit = 0; bit < 8; ++bit) {
                word = (word >> 1) ^ ((word & 1) != 0 ? POLYNOMIAL : 0);
            }
            m_Words[byte] = word;
        }
    }

    /// The register after its lowest byte, of more than 32 bits if bytes of data stand above it.
    template<typename TRegister>
    constexpr TRegister step(TRegister value) const
    {
        return (value >> 8) ^ m_Words[value & 0xFF];
    }

private:
    static constexpr std::uint32_t POLYNOMIAL = 0xEDB88320;

    std::uint32_t m_Words[256];
};

constexpr CRCTable TABLE;

/// What `SIZE` zero bytes make of a register. That is linear: the sum of what they make of its
/// bits.
template<std::size_t SIZE>
class ZeroBytes
{
public:
    constexpr ZeroBytes() : m_Bits()
    {
        for (std::size_t bit = 0; bit < 32; ++bit) {
            std::uint32_t value = std::uint32_t{1} << bit;
            for (std::size_t i = 0; i < SIZE; ++i) {
                value = TABLE.step(value);
            }
            m_Bits[bit] = value;
        }
    }

    std::uint32_t after(std::uint32_t value) const
    {
        std::uint32_t sum = 0;
        for (std::uint32_t bit = 0; bit < 32; ++bit) {
            sum ^= m_Bits[bit] & (0 - (value >> bit & 1));
        }
        return sum;
    }

private:
    std::uint32_t m_Bits[32];
};

constexpr std::size_t LANES = 4;
constexpr std::size_t WORD = 8;

/// Takes in blocks of four lanes, side by side: each byte's step waits for the one before it in its
/// lane, so that one lane alone leaves the machine idle most of the time. The registers are joined
/// at the end of each block.
template<std::size_t LANE>
std::uint32_t addBlocks(std::uint32_t value, const unsigned char*& data, std::size_t& size)
{
    static constexpr ZeroBytes<LANE> LANE_OF_ZEROS;
    while (size >= LANES * LANE) {
        std::uint64_t a = value, b = 0, c = 0, d = 0;
        for (const unsigned char* const end = data + LANE; data != end; data += WORD) {
            a ^= loadLongWord(data);
            b ^= loadLongWord(data + LANE);
            c ^= loadLongWord(data + 2 * LANE);
            d ^= loadLongWord(data + 3 * LANE);
            for (std::size_t byte = 0; byte < WORD; ++byte) {
                a = TABLE.step(a);
                b = TABLE.step(b);
                c = TABLE.step(c);
                d = TABLE.step(d);
            }
        }
        value = static_cast<std::uint32_t>(a);
        for (const std::uint64_t lane : {b, c, d}) {
            value = LANE_OF_ZEROS.after(value) ^ static_cast<std::uint32_t>(lane);
        }
        data += (LANES - 1) * LANE;
        size -= LANES * LANE;
    }
    return value;
}

} // namespace

CRC32::CRC32(unsigned int initialValue) : m_InitialValue(initialValue), m_CurrentValue(initialValue)
{
}

CRC32::~CRC32() = default;

void CRC32::addRaw(const unsigned char* data, unsigned int length)
{
    std::size_t size = length;
    std::uint32_t value = addBlocks<1024>(m_CurrentValue, data, size);
    value = addBlocks<64>(value, data, size);
    for (; size > 0; --size) {
        value = TABLE.step(value ^ *data++);
    }
    m_CurrentValue = value;
}

void CRC32::finalize() {}

unsigned int CRC32::getChecksumLength()
{
    return sizeof m_CurrentValue;
}

void CRC32::getChecksumRaw(unsigned char* out)
{
    storeWord(out, m_CurrentValue);
}

unsigned int CRC32::getChecksumInteger()
{
    return m_CurrentValue;
}

void CRC32::reset()
{
    m_CurrentValue = m_InitialValue;
}

} // namespace qor
