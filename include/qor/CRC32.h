#pragma once

#include <cstdint>

#include "qor/Checksum.h"
#include "qor/Export.h"

namespace qor
{

/// The reflected CRC-32 with the polynomial 0xEDB88320, as a bare register: it begins with the
/// initial value as it is, and is read as it is. Nothing is inverted at either end.
///
/// So the default object does not give the value usually called CRC-32, the one of zip archives and
/// PNG images. That is the one's complement of what an object gives that was made with the initial
/// value 0xFFFFFFFF:
///
/// @code
/// qor::CRC32 checksum(0xFFFFFFFF);
/// checksum.add("123456789");
/// const unsigned int usual = ~checksum.getChecksumInteger(); // 0xCBF43926
/// @endcode
///
/// finalize() does nothing: data may be read at any time and added at any time. A copy goes on by
/// itself, with the initial value of its source.
class QORTK_API CRC32 : public Checksum
{
public:
    /// @param initialValue the register at the beginning, and after reset()
    explicit CRC32(unsigned int initialValue = 0)
        : m_InitialValue(initialValue), m_CurrentValue(initialValue)
    {
    }

    /// Takes over the register and the initial value.
    /// @{
    CRC32(const CRC32& other) = default;
    CRC32& operator=(const CRC32& other) = default;
    /// @}

    ~CRC32() override = default;

    void addRaw(const unsigned char* data, unsigned int length) override;

    /// Does nothing.
    void finalize() override;

    /// @return 4
    unsigned int getChecksumLength() override;

    /// Stores the register, least significant byte first. The hexadecimal text thus shows the bytes
    /// of getChecksumInteger() in reverse order.
    void getChecksumRaw(unsigned char* out) override;

    /// @return the register
    unsigned int getChecksumInteger() override { return m_CurrentValue; }

    void reset() override;

private:
    std::uint32_t m_InitialValue;
    std::uint32_t m_CurrentValue;
};

} // namespace qor
