#pragma once

#include <cstdint>

#include "qor/Checksum.h"
#include "qor/Export.h"

namespace qor
{

/// The reflected CRC-32 with the polynomial 0xEDB88320, as a bare register: it starts with the
/// initial value and is read as it is. Nothing is inverted at either end.
///
/// So the default object does not compute the usual CRC-32 of zip archives and PNG images. That one
/// starts with 0xFFFFFFFF and is inverted at the end:
///
/// @code
/// qor::CRC32 checksum(0xFFFFFFFF);
/// checksum.add("123456789");
/// const unsigned int usual = ~checksum.getChecksumInteger(); // 0xCBF43926
/// @endcode
///
/// finalize() does nothing: the value may be read and data added at any time. A copy is independent
/// of its source and has the same initial value.
class QORTK_API CRC32 : public Checksum
{
public:
    /// Constructs a register with the initial value 0.
    CRC32() : CRC32(0) {}

    /// Constructs a register with an initial value.
    /// @param initialValue value of the register at the start and after reset()
    explicit CRC32(unsigned int initialValue);

    /// Copies the register and the initial value.
    /// @param other checksum to copy
    /// @{
    CRC32(const CRC32& other) = default;
    CRC32& operator=(const CRC32& other) = default;
    /// @}

    ~CRC32() override;

    void addRaw(const unsigned char* data, unsigned int length) override;

    /// Does nothing.
    void finalize() override;

    /// Returns 4.
    unsigned int getChecksumLength() override;

    /// Stores the register, least significant byte first. So the hexadecimal text has the bytes of
    /// getChecksumInteger() in reverse order.
    /// @param[out] out 4 bytes
    void getChecksumRaw(unsigned char* out) override;

    /// Returns the register.
    unsigned int getChecksumInteger() override;

    void reset() override;

private:
    std::uint32_t m_InitialValue;
    std::uint32_t m_CurrentValue;
};

} // namespace qor
