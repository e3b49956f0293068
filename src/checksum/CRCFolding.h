// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace qor
{

/// Carry-less-multiplication folding (V. Gopal and others, "Fast CRC Computation for Generic
/// Polynomials Using PCLMULQDQ Instruction", Intel 2009): replaces data by a few bytes that leave
/// the same value in a CRC register. There is one implementation per vector width.
///
/// CRCFolding.cpp has the list of implementations, NoCRCFolding.cpp an empty one for other
/// processors and compilers.
struct TCRCFolding {
    static constexpr std::size_t UNIT = 16; ///< folding adds only multiples of this size

    int vectorBits;        ///< width of the vectors
    std::size_t minSize;   ///< minimum size of data in bytes
    bool (*isSupported)(); ///< returns whether the processor and the operating system support it

    /// Adds data to a register, except the last `size` % `UNIT` bytes.
    /// @param value the register before the data
    /// @param data,size at least `minSize` bytes
    /// @return the register after the bytes added
    std::uint32_t (*fold)(std::uint32_t value, const unsigned char* data, std::size_t size);
};

/// The implementations in the library, including those that this processor cannot run.
struct TCRCFoldingList {
    const TCRCFolding* const* first;
    const TCRCFolding* const* pastLast;

    const TCRCFolding* const* begin() const { return first; }
    const TCRCFolding* const* end() const { return pastLast; }
};

TCRCFoldingList getCRCFoldings();

/// Returns the fastest implementation for this size on this processor; null if there is none.
const TCRCFolding* chooseCRCFolding(std::size_t size);

} // namespace qor
