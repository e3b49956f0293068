#pragma once

#include <cstdint>

#include "qor/Checksum.h"
#include "qor/Export.h"

namespace qor
{

/// The message digest of RFC 1321. It tells accidental changes; it is no protection against made
/// ones, as texts with one digest can be made at will.
///
/// finalize() has to be called exactly once behind the last data. Before it the reading operations
/// show the state behind the last whole block of 64 bytes. A second finalize(), or data behind it
/// without reset(), give a defined result that is no digest of the standard. A copy has all of its
/// source and goes on by itself.
///
/// @code
/// qor::MD5 digest;
/// digest.add("abc");
/// digest.finalize();
/// digest.getChecksumHex(); // "900150983cd24fb0d6963f7d28e17f72"
/// @endcode
class QORTK_API MD5 : public Checksum
{
public:
    MD5();

    /// Takes over all data taken in so far.
    /// @{
    MD5(const MD5& other) = default;
    MD5& operator=(const MD5& other) = default;
    /// @}

    ~MD5() override;

    void addRaw(const unsigned char* data, unsigned int length) override;

    /// Puts the padding and the length behind the data.
    void finalize() override;

    /// @return 16
    unsigned int getChecksumLength() override;

    /// Stores the digest in the standard's order of bytes.
    void getChecksumRaw(unsigned char* out) override;

    void reset() override;

private:
    static constexpr unsigned int BLOCK_SIZE = 64;

    unsigned char* blockBytes();
    void MD5Transform(const unsigned int* block);

    std::uint32_t m_State[4];
    std::uint32_t m_BitCount[2];           ///< low word first
    std::uint32_t m_Block[BLOCK_SIZE / 4]; ///< bytes that wait for the rest of their block
};

} // namespace qor
