// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "qor/Checksum.h"
#include "qor/Export.h"

namespace qor
{

/// The reflected CRC-32 with the polynomial 0xEDB88320. Neither the initial value nor the result is
/// inverted.
///
/// Zip archives and PNG images use a CRC-32 with both inversions. To compute it, pass 0xFFFFFFFF to
/// the constructor and invert the result:
///
/// @code
/// qor::CRC32 checksum(0xFFFFFFFF);
/// checksum.add("123456789");
/// const unsigned int usual = ~checksum.getChecksumInteger(); // 0xCBF43926
/// @endcode
///
/// Data may be added after the result has been read, because finalize() has no effect. A copy has
/// the same value and initial value, and is independent of its source.
///
/// **Error handling** and **thread safety** are those of Checksum.
class QORTK_API CRC32 : public Checksum
{
public:
    /// Constructs a checksum with the initial value 0.
    CRC32() : CRC32(0) {}

    /// Constructs a checksum with an initial value.
    /// @param initialValue value before any data is added, and after reset()
    explicit CRC32(unsigned int initialValue);

    /// Copies the value and the initial value.
    /// @param other checksum to copy
    CRC32(const CRC32& other) = default;

    /// Copies the value and the initial value.
    /// @param other checksum to copy
    /// @return this checksum
    CRC32& operator=(const CRC32& other) = default;

    QORTK_API_INLINE ~CRC32() override = default;

    void addRaw(const unsigned char* data, unsigned int length) override;

    /// Has no effect.
    void finalize() override;

    /// Returns the length of the raw form.
    /// @return 4
    unsigned int getChecksumLength() override;

    /// Stores the value, least significant byte first. The result of getChecksumHex() thus has the
    /// bytes of getChecksumInteger() in reverse order.
    /// @param[out] out 4 bytes
    void getChecksumRaw(unsigned char* out) override;

    /// Returns the checksum as a number.
    /// @return the current value
    QORTK_API_INLINE unsigned int getChecksumInteger() override { return m_CurrentValue; }

    void reset() override;

private:
    std::uint32_t m_InitialValue;
    std::uint32_t m_CurrentValue;
};

} // namespace qor
