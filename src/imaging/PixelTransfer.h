// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace qor
{

/// The geometry and the new alpha of a keyed transfer of pixels. All distances are in bytes.
struct TKeyedTransfer {
    std::ptrdiff_t columns;       ///< pixels per row of the target, at least 1
    std::ptrdiff_t rows;          ///< rows of the target, at least 1
    std::ptrdiff_t step;          ///< from a pixel of the source to the next
    std::ptrdiff_t sourceAdvance; ///< from the start of a row to that of the next
    std::ptrdiff_t targetAdvance;
    std::uint32_t alpha; ///< new alpha, in bits 31 to 24
};

/// Copies the pixels that are not black and replaces their alpha.
/// @return the number of pixels that passed
int transferByColorKey(const void* source, void* target, const TKeyedTransfer& transfer);

/// Copies the pixels whose alpha is at least a level and replaces their alpha.
/// @return the number of pixels that passed
int transferByAlpha(const void* source, void* target, const TKeyedTransfer& transfer,
                    int alphaLevel);

} // namespace qor
