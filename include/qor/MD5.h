// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "qor/Checksum.h"
#include "qor/Export.h"

namespace qor
{

/// The MD5 message digest of RFC 1321. It detects accidental changes. It does not protect against
/// forged data, because collisions of MD5 can be constructed.
///
/// Call finalize() exactly once, after the last data. Before that call, the reading operations
/// return the state after the last complete block of 64 bytes. If finalize() is called twice, or
/// data is added after finalize() without a reset(), the result is defined but is not an MD5
/// digest. A copy contains all data of its source and is independent of it.
///
/// **Error handling** and **thread safety** are those of Checksum.
///
/// @code
/// qor::MD5 digest;
/// digest.add("abc");
/// digest.finalize();
/// const std::string text = digest.getChecksumHex(); // "900150983cd24fb0d6963f7d28e17f72"
/// @endcode
class QORTK_API MD5 : public Checksum
{
public:
    /// Constructs a digest of no data.
    MD5();

    /// Copies all data added so far.
    /// @param other digest to copy
    MD5(const MD5& other) = default;

    /// Copies all data added so far.
    /// @param other digest to copy
    /// @return this digest
    MD5& operator=(const MD5& other) = default;

    ~MD5() override;

    void addRaw(const unsigned char* data, unsigned int length) override;

    /// Appends the padding and the length of the data.
    void finalize() override;

    /// Returns the length of the raw form.
    /// @return 16
    unsigned int getChecksumLength() override;

    /// Stores the digest in the byte order of RFC 1321.
    /// @param[out] out 16 bytes
    void getChecksumRaw(unsigned char* out) override;

    void reset() override;

private:
    static constexpr unsigned int BLOCK_SIZE = 64;

    unsigned char* blockBytes();
    void MD5Transform(const unsigned int* block);

    std::uint32_t m_State[4];
    std::uint32_t m_BitCount[2];           ///< low word first
    std::uint32_t m_Block[BLOCK_SIZE / 4]; ///< bytes of an incomplete block
};

} // namespace qor
