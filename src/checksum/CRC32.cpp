// SPDX-License-Identifier: MIT
#include "qor/CRC32.h"

#include <cstddef>

#include "checksum/CRCFolding.h"
#include "checksum/CRCTables.h"
#include "foundation/LittleEndian.h"

namespace qor
{

CRC32::CRC32(unsigned int initialValue) : m_InitialValue(initialValue), m_CurrentValue(initialValue)
{
}

void CRC32::addRaw(const unsigned char* data, unsigned int length)
{
    const TCRCFolding* const folding = chooseCRCFolding(length);
    if (!folding) {
        m_CurrentValue = addBytesByTables(m_CurrentValue, data, length);
        return;
    }
    m_CurrentValue = folding->fold(m_CurrentValue, data, length);
    const std::size_t rest = length % TCRCFolding::UNIT;
    if (rest > 0) {
        m_CurrentValue = addBytesByTables(m_CurrentValue, data + length - rest, rest);
    }
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

void CRC32::reset()
{
    m_CurrentValue = m_InitialValue;
}

} // namespace qor
