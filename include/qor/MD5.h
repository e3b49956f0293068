#pragma once

#include <cstdint>

#include "qor/Checksum.h"
#include "qor/Export.h"

namespace qor
{

/// The MD5 message digest of RFC 1321. It detects accidental changes. It does not protect against
/// deliberate ones, since different texts with the same digest can be constructed.
///
/// Call finalize() exactly once after the last data. Before that, the reading operations return the
/// state after the last complete block of 64 bytes. A second finalize(), or data added after it
/// without reset(), give a defined result that is not a digest of the standard. A copy contains all
/// data of its source and is independent of it.
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
    /// @{
    MD5(const MD5& other) = default;
    MD5& operator=(const MD5& other) = default;
    /// @}

    ~MD5() override;

    void addRaw(const unsigned char* data, unsigned int length) override;

    /// Appends the padding and the length of the data.
    void finalize() override;

    /// Returns 16.
    unsigned int getChecksumLength() override;

    /// Stores the digest in the byte order of the standard.
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
