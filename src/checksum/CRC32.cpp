#include "qor/CRC32.h"

#include <cstddef>

#include "checksum/CRCFolding.h"
#include "foundation/LittleEndian.h"

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
                word = timesX(word);
            }
            m_Words[byte] = word;
        }
    }

    constexpr std::uint32_t operator[](std::uint32_t byte) const { return m_Words[byte]; }

private:
    std::uint32_t m_Words[256];
};

constexpr CRCTable TABLE;

std::uint32_t addBytes(std::uint32_t value, const unsigned char* data, std::size_t size)
{
    for (; size > 0; --size) {
        value = (value >> 8) ^ TABLE[(value ^ *data++) & 0xFF];
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
    if (size >= CRCFolding::LEAST_SIZE && CRCFolding::isAvailable()) {
        unsigned char folded[CRCFolding::FOLDED_SIZE];
        const std::size_t rest = CRCFolding::fold(m_CurrentValue, data, size, folded);
        m_CurrentValue = addBytes(0, folded, sizeof folded);
        data += size - rest;
        size = rest;
    }
    m_CurrentValue = addBytes(m_CurrentValue, data, size);
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
